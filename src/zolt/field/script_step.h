#pragma once

#include <utility>
#include <vector>

#include "zolt/algexpr/number_display_format.h"
#include "zolt/field/commands.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/tree_path.h"

namespace zolt::field {

using oss::wstring;

// What a person and a host do to a formula field or a view, as values: the field records them, and
// zolt/script/ reads, writes and plays them. docs/event-scripts.md describes the steps.

enum ScriptWordE {
  SCRIPT_CHAR,          ///< `char a`, `char U+0028`: a typed character
  SCRIPT_KEY,           ///< `key left`, `key 37 shift`: a key by its code
  SCRIPT_TYPE,          ///< `type "abc"`: characters typed one by one
  SCRIPT_INSERT,        ///< `insert "abc"`: a whole text as one event
  SCRIPT_OPERATOR,      ///< `op sqrt`: inserts the operator of that name
  SCRIPT_PEN_DOWN,      ///< `pen down 10 5`, `pen down 10 5 x2 shift`
  SCRIPT_PEN_MOVE,      ///< `pen move 10 5`
  SCRIPT_PEN_UP,        ///< `pen up`
  SCRIPT_COMMAND,       ///< `command select-all`
  SCRIPT_COPY,          ///< `copy`
  SCRIPT_CUT,           ///< `cut`
  SCRIPT_PASTE,         ///< `paste`: what was copied
  SCRIPT_PASTE_TEXT,    ///< `paste "(a+b)/2"`: plain text
  SCRIPT_PASTE_PREFIX,  ///< `paste prefix "+(a,b)"`: an expression
  SCRIPT_PASTE_BYTES,   ///< `paste bytes "0103…"`: a copied row, in hexadecimal
  SCRIPT_UNDO,          ///< `undo`
  SCRIPT_REDO,          ///< `redo`
  SCRIPT_SHOW,          ///< `show "+(a,b)"`, `show "3.14159" precision 3 format fixed`: the host shows an
                        ///< expression; `show ""` none
  SCRIPT_TREE,          ///< `tree "[\"a‸\"]"`: a tree with caret and selection, in tree notation
  SCRIPT_SET,           ///< `set decimal-comma on`: an option
  SCRIPT_NAMES,         ///< `names "max min"`: the names that single letters leave whole
  SCRIPT_LOCK,          ///< `lock`: not editable
  SCRIPT_UNLOCK,        ///< `unlock`
  SCRIPT_PAINT,         ///< `paint`: the host draws
  SCRIPT_COMPLETE,      ///< `complete`: the name just typed becomes its letter
  SCRIPT_ASK,           ///< `ask`: the host asks for the expression and for the fault
  SCRIPT_MOVE,          ///< `move 0.2.1.0:3`: the selection goes to that place
  SCRIPT_SUGGEST,       ///< `suggest`: the host asks for names that begin with the letters just typed
  SCRIPT_ACCEPT,        ///< `accept 2`: that entry of the list of completions is inserted, counted from 0
  SCRIPT_SELECT         ///< `select 0.0:1 0.0:3`: the anchor and the caret are put to these places
};

/// One step of an event script: a word, and those of its arguments that the word has.
struct ScriptStepS {
  ScriptWordE word = SCRIPT_CHAR;
  math::algexpr::NumberDisplayFormatE format =
      math::algexpr::NUMBER_FORMAT_AUTOMATIC;  ///< of a shown expression
  wstring text;            ///< of a text word, or the name of an operator, command or option
  unsigned long code = 0;  ///< of a character, a key or an entry; the precision of a shown expression
  bool shift = false;      ///< of a key or the pointer
  bool on = false;         ///< of an option
  unsigned clicks = 1;     ///< of the pointer
  long x = 0;
  long y = 0;
  std::vector<math::ved::PlacePathS> places;  ///< where the selection goes, or its anchor and its caret
};

using EventScriptT = std::vector<ScriptStepS>;

/// The commands that are words of their own.
constexpr std::pair<ScriptWordE, CommandE> script_commands[] = {{SCRIPT_COPY, COMMAND_COPY},
                                                                {SCRIPT_CUT, COMMAND_CUT},
                                                                {SCRIPT_PASTE, COMMAND_PASTE},
                                                                {SCRIPT_UNDO, COMMAND_UNDO},
                                                                {SCRIPT_REDO, COMMAND_REDO}};

inline ScriptStepS makeStep(ScriptWordE word, wstring text = {}) {
  ScriptStepS step;
  step.word = word;
  step.text = std::move(text);
  return step;
}

}  // namespace zolt::field
