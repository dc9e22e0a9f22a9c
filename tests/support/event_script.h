#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::tests {

using oss::wstring;

/// What a person or a host does to a view.
enum ScriptWordE {
  SCRIPT_CHAR,      ///< `char a`, `char U+0028`: a character event
  SCRIPT_KEY,       ///< `key left`, `key 37 shift`: a key event
  SCRIPT_TYPE,      ///< `type "abc"`: a character event for each
  SCRIPT_INSERT,    ///< `insert "abc"`: a whole text as one event
  SCRIPT_OPERATOR,  ///< `op sqrt`: inserts the operator of that name
  SCRIPT_DOWN,      ///< `down 10 5`: the pointer is pressed
  SCRIPT_MOVE,      ///< `move 10 5`
  SCRIPT_UP,        ///< `up`
  SCRIPT_COPY,      ///< `copy`: to the clipboard
  SCRIPT_CUT,       ///< `cut`
  SCRIPT_PASTE,     ///< `paste`: the clipboard's bytes; `paste "+(a,b)"`: an expression
  SCRIPT_UNDO,      ///< `undo`
  SCRIPT_REDO,      ///< `redo`
  SCRIPT_SHOW,      ///< `show "+(a,b)"`: the host shows an expression
  SCRIPT_LOCK,      ///< `lock`: not editable
  SCRIPT_UNLOCK,    ///< `unlock`
  SCRIPT_PAINT,     ///< `paint`: the host draws
};

struct ScriptStepS {
  ScriptWordE word = SCRIPT_CHAR;
  wstring text;            ///< of a text word, or an operator's name
  bool hasText = false;    ///< tells the two kinds of `paste` apart
  unsigned long code = 0;  ///< of a character or a key
  bool shift = false;
  long x = 0;
  long y = 0;
};

using EventScriptT = std::vector<ScriptStepS>;

/// Reads steps separated by blanks or line ends. In texts, `\` stands before a quote or itself and `\uXXXX`
/// is a character by its code. On failure false, with `position` at the step that could not be read.
bool readEventScript(wstring const& text, EventScriptT& script, unsigned long& position);

/// The script as it reads back, one blank between steps.
wstring writeEventScript(EventScriptT const& script);

}  // namespace zolt::tests
