#include "zolt/field/commands.h"

#include <algorithm>
#include <set>

#include "zolt/common/signs.h"

namespace zolt::field {

namespace {

constexpr bool modifies = true;

/// The keys of a chord in small letters, so that chords can be compared.
std::set<wstring> readChord(wstring const& written) {
  wstring const chord = math::common::toAsciiLower(written);
  std::set<wstring> keys;
  for (std::size_t start = 0; start < chord.size();) {
    std::size_t const end = std::min(chord.find(u'+', start + 1), chord.size());
    keys.insert(chord.substr(start, end - start));
    start = end + 1;
  }
  return keys;
}

bool hasChord(wstring const& keys, std::set<wstring> const& chord) {
  static wstring const separator = u", ";
  for (std::size_t start = 0; start < keys.size();) {
    std::size_t const end = std::min(keys.find(separator, start), keys.size());
    if (readChord(keys.substr(start, end - start)) == chord) return true;
    start = end + separator.size();
  }
  return false;
}

}  // namespace

std::array<CommandS, COMMAND_COUNT> const& commands() {
  static std::array<CommandS, COMMAND_COUNT> const table = {{
      {COMMAND_LEFT, u"left", u"Left",
       u"Moves the caret one character to the left, or to the start of the selection.", u"Left"},
      {COMMAND_RIGHT, u"right", u"Right",
       u"Moves the caret one character to the right, or to the end of the selection.", u"Right"},
      {COMMAND_UP, u"up", u"Up",
       u"Moves the caret to the nearest place above: into an exponent, from a denominator to the numerator.",
       u"Up"},
      {COMMAND_DOWN, u"down", u"Down",
       u"Moves the caret to the nearest place below: out of an exponent, from a numerator to the "
       u"denominator.",
       u"Down"},
      {COMMAND_WORD_LEFT, u"word-left", u"Item left",
       u"Moves the caret to the left over a name, number, sign or whole construct.", u"Ctrl+Left"},
      {COMMAND_WORD_RIGHT, u"word-right", u"Item right",
       u"Moves the caret to the right over a name, number, sign or whole construct.", u"Ctrl+Right"},
      {COMMAND_HOME, u"home", u"Start of row",
       u"Moves the caret to the start of its row, and from there to the start of the formula.", u"Home"},
      {COMMAND_END, u"end", u"End of row",
       u"Moves the caret to the end of its row, and from there to the end of the formula.", u"End"},
      {COMMAND_FORMULA_START, u"formula-start", u"Start of formula",
       u"Moves the caret to the start of the formula.", u"Ctrl+Home"},
      {COMMAND_FORMULA_END, u"formula-end", u"End of formula", u"Moves the caret to the end of the formula.",
       u"Ctrl+End"},
      {COMMAND_NEXT_SLOT, u"next-slot", u"Next empty place",
       u"Moves the caret to the next empty place; when there is none, behind the construct around it.",
       u"Tab"},
      {COMMAND_PREVIOUS_SLOT, u"previous-slot", u"Previous empty place",
       u"Moves the caret to the previous empty place; when there is none, before the construct around it.",
       u"Shift+Tab"},
      {COMMAND_OUT_LEFT, u"out-left", u"Out to the left", u"Moves the caret before the construct around it.",
       u"Alt+Left"},
      {COMMAND_OUT_RIGHT, u"out-right", u"Out to the right",
       u"Moves the caret behind the construct around it.", u"Alt+Right"},
      {COMMAND_SELECT_LEFT, u"select-left", u"Select left",
       u"Moves the end of the selection one character to the left.", u"Shift+Left"},
      {COMMAND_SELECT_RIGHT, u"select-right", u"Select right",
       u"Moves the end of the selection one character to the right.", u"Shift+Right"},
      {COMMAND_SELECT_UP, u"select-up", u"Select up",
       u"Moves the end of the selection to the nearest place above.", u"Shift+Up"},
      {COMMAND_SELECT_DOWN, u"select-down", u"Select down",
       u"Moves the end of the selection to the nearest place below.", u"Shift+Down"},
      {COMMAND_SELECT_WORD_LEFT, u"select-word-left", u"Select item left",
       u"Moves the end of the selection to the left over a name, number, sign or whole construct.",
       u"Ctrl+Shift+Left"},
      {COMMAND_SELECT_WORD_RIGHT, u"select-word-right", u"Select item right",
       u"Moves the end of the selection to the right over a name, number, sign or whole construct.",
       u"Ctrl+Shift+Right"},
      {COMMAND_SELECT_HOME, u"select-home", u"Select to start of row",
       u"Selects to the start of the row, and from there to the start of the formula.", u"Shift+Home"},
      {COMMAND_SELECT_END, u"select-end", u"Select to end of row",
       u"Selects to the end of the row, and from there to the end of the formula.", u"Shift+End"},
      {COMMAND_SELECT_FORMULA_START, u"select-formula-start", u"Select to start",
       u"Selects to the start of the formula.", u"Ctrl+Shift+Home"},
      {COMMAND_SELECT_FORMULA_END, u"select-formula-end", u"Select to end",
       u"Selects to the end of the formula.", u"Ctrl+Shift+End"},
      {COMMAND_SELECT_ALL, u"select-all", u"Select all", u"Selects the whole formula.", u"Ctrl+A"},
      {COMMAND_GROW_SELECTION, u"grow-selection", u"Grow selection",
       u"Selects the name or number at the caret, then the operand, term, brackets, row and construct "
       u"around.",
       u"Alt+Shift+Right, Alt+Shift+Up"},
      {COMMAND_SHRINK_SELECTION, u"shrink-selection", u"Shrink selection", u"Takes back the last growth.",
       u"Alt+Shift+Left, Alt+Shift+Down"},
      {COMMAND_DROP_SELECTION, u"drop-selection", u"Drop selection", u"Leaves the caret where it is.",
       u"Escape"},
      {COMMAND_DELETE_LEFT, u"delete-left", u"Delete left",
       u"Deletes the selection, or the character before the caret; steps into a construct that is not empty.",
       u"Backspace, Shift+Backspace", modifies},
      {COMMAND_DELETE_RIGHT, u"delete-right", u"Delete right",
       u"Deletes the selection, or the character behind the caret; steps into a construct that is not empty.",
       u"Delete", modifies},
      {COMMAND_DELETE_WORD_LEFT, u"delete-word-left", u"Delete item left",
       u"Deletes the name, number, sign or whole construct before the caret.", u"Ctrl+Backspace", modifies},
      {COMMAND_DELETE_WORD_RIGHT, u"delete-word-right", u"Delete item right",
       u"Deletes the name, number, sign or whole construct behind the caret.", u"Ctrl+Delete", modifies},
      {COMMAND_CLEAR, u"clear", u"Clear", u"Empties the formula.", u"Ctrl+Shift+Delete", modifies},
      {COMMAND_UNDO, u"undo", u"Undo", u"Takes back the last change.", u"Ctrl+Z, Alt+Backspace", modifies},
      {COMMAND_REDO, u"redo", u"Redo", u"Brings back the change that was taken back last.",
       u"Ctrl+Y, Ctrl+Shift+Z", modifies},
      {COMMAND_CUT, u"cut", u"Cut", u"Moves the selection to the clipboard.", u"Ctrl+X, Shift+Delete",
       modifies},
      {COMMAND_COPY, u"copy", u"Copy", u"Copies the selection to the clipboard.", u"Ctrl+C, Ctrl+Insert"},
      {COMMAND_PASTE, u"paste", u"Paste", u"Replaces the selection by what is on the clipboard.",
       u"Ctrl+V, Shift+Insert", modifies},
      {COMMAND_ROW_ABOVE, u"row-above", u"Insert row above",
       u"Inserts a row into the table, above the caret's cell or the selected cells.", u"Alt+Shift+Enter",
       modifies},
      {COMMAND_ROW_BELOW, u"row-below", u"Insert row below",
       u"Inserts a row into the table, below the caret's cell or the selected cells.", u"Alt+Enter",
       modifies},
      {COMMAND_COLUMN_LEFT, u"column-left", u"Insert column left",
       u"Inserts a column into the table, left of the caret's cell or the selected cells.",
       u"Alt+Shift+Insert", modifies},
      {COMMAND_COLUMN_RIGHT, u"column-right", u"Insert column right",
       u"Inserts a column into the table, right of the caret's cell or the selected cells.", u"Alt+Insert",
       modifies},
      {COMMAND_DELETE_ROWS, u"delete-rows", u"Delete row",
       u"Deletes the row of the caret's cell, or the rows of the selected cells; the last row takes the "
       u"table "
       u"with it.",
       u"Alt+Delete", modifies},
      {COMMAND_DELETE_COLUMNS, u"delete-columns", u"Delete column",
       u"Deletes the column of the caret's cell, or the columns of the selected cells; the last column takes "
       u"the table with it.",
       u"Alt+Shift+Delete", modifies},
      {COMMAND_ROWS_UP, u"rows-up", u"Move row up",
       u"Moves the row of the caret's cell, or the rows of the selected cells, up in the table.", u"Alt+Up",
       modifies},
      {COMMAND_ROWS_DOWN, u"rows-down", u"Move row down",
       u"Moves the row of the caret's cell, or the rows of the selected cells, down in the table.",
       u"Alt+Down", modifies},
      {COMMAND_COLUMNS_LEFT, u"columns-left", u"Move column left",
       u"Moves the column of the caret's cell, or the columns of the selected cells, to the left.",
       u"Alt+PageUp", modifies},
      {COMMAND_COLUMNS_RIGHT, u"columns-right", u"Move column right",
       u"Moves the column of the caret's cell, or the columns of the selected cells, to the right.",
       u"Alt+PageDown", modifies},
      {COMMAND_NEXT_ROW, u"next-row", u"Next row",
       u"Moves the caret to the first cell of the table's next row; after the last one there is a new row.",
       u"Enter", modifies},
  }};
  return table;
}

CommandS const* findCommand(wstring const& name) {
  for (CommandS const& command : commands()) {
    if (command.name == name) return &command;
  }
  return nullptr;
}

CommandS const* findCommandForKeys(wstring const& chord) {
  auto const wanted = readChord(chord);
  for (CommandS const& command : commands()) {
    if (hasChord(command.keys, wanted)) return &command;
  }
  return nullptr;
}

}  // namespace zolt::field
