#pragma once

#include <array>

#include "zolt/oss/wstring.h"

namespace zolt::field {

using oss::wstring;

/// What a person can ask of a formula field by key, menu or button.
enum CommandE {
  COMMAND_LEFT,
  COMMAND_RIGHT,
  COMMAND_UP,
  COMMAND_DOWN,
  COMMAND_WORD_LEFT,
  COMMAND_WORD_RIGHT,
  COMMAND_HOME,
  COMMAND_END,
  COMMAND_FORMULA_START,
  COMMAND_FORMULA_END,
  COMMAND_NEXT_SLOT,
  COMMAND_PREVIOUS_SLOT,
  COMMAND_OUT_LEFT,
  COMMAND_OUT_RIGHT,
  COMMAND_SELECT_LEFT,
  COMMAND_SELECT_RIGHT,
  COMMAND_SELECT_UP,
  COMMAND_SELECT_DOWN,
  COMMAND_SELECT_WORD_LEFT,
  COMMAND_SELECT_WORD_RIGHT,
  COMMAND_SELECT_HOME,
  COMMAND_SELECT_END,
  COMMAND_SELECT_FORMULA_START,
  COMMAND_SELECT_FORMULA_END,
  COMMAND_SELECT_ALL,
  COMMAND_GROW_SELECTION,
  COMMAND_SHRINK_SELECTION,
  COMMAND_DROP_SELECTION,
  COMMAND_DELETE_LEFT,
  COMMAND_DELETE_RIGHT,
  COMMAND_DELETE_WORD_LEFT,
  COMMAND_DELETE_WORD_RIGHT,
  COMMAND_CLEAR,
  COMMAND_UNDO,
  COMMAND_REDO,
  COMMAND_CUT,
  COMMAND_COPY,
  COMMAND_PASTE,
  COMMAND_ROW_ABOVE,  // the acts of `TableActE` from here on, in their order
  COMMAND_ROW_BELOW,
  COMMAND_COLUMN_LEFT,
  COMMAND_COLUMN_RIGHT,
  COMMAND_DELETE_ROWS,
  COMMAND_DELETE_COLUMNS,
  COMMAND_ROWS_UP,
  COMMAND_ROWS_DOWN,
  COMMAND_COLUMNS_LEFT,
  COMMAND_COLUMNS_RIGHT,
  COMMAND_NEXT_ROW,
  COMMAND_COUNT
};

/// One line of the table of commands, from which palettes, menus, help pages and tests are made.
struct CommandS {
  CommandE command;
  wstring name;   ///< for scripts and settings, fixed: "select-left"
  wstring title;  ///< for menus: "Select left"
  wstring help;   ///< one sentence
  /// The keys that run it: chords of Ctrl, Alt, Shift and one key, separated by a comma and a blank, "Ctrl+Y,
  /// Ctrl+Shift+Z". Menus show the first. On a Mac the host reads Ctrl as Command. Empty: none.
  wstring keys;
  bool modifies =
      false;  ///< whether it can change the formula; such a command is disabled while the field is locked
};

/// All commands, each at the index of its `CommandE`.
std::array<CommandS, COMMAND_COUNT> const& commands();

/// The command of that name; null when there is none.
CommandS const* findCommand(wstring const& name);

/// The command whose keys include the chord, its modifiers in any order and case; null when there is none.
CommandS const* findCommandForKeys(wstring const& chord);

}  // namespace zolt::field
