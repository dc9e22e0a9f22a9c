#pragma once

#include "zolt/field/script_step.h"

namespace zolt::script {

using field::EventScriptT;
using field::ScriptStepS;
using oss::wstring;

// Event scripts: the steps of zolt/field/script_step.h as lines of text, for tests, fuzz seeds, benches,
// recordings and bug reports. docs/event-scripts.md describes the format.

/// Reads steps separated by blanks or line ends; a line that starts with "#" is a comment. When a step cannot
/// be read, the result is false, `script` is untouched and `position` is where that step starts.
bool readEventScript(wstring const& text, EventScriptT& script, unsigned long& position);

/// The script as text that `readEventScript` reads: a line for each step, each ended by "\n".
wstring writeEventScript(EventScriptT const& script);
/// One step, without the line end.
wstring writeScriptStep(ScriptStepS const& step);

}  // namespace zolt::script
