#pragma once

#include "zolt/field/script_step.h"

namespace zolt::script {

using field::EventScriptT;
using field::ScriptStepS;
using oss::wstring;

// Event scripts: the steps of zolt/field/script_step.h as lines of text, for tests, fuzz seeds, benches,
// recordings and bug reports. docs/event-scripts.md describes the format.

/// Reads steps separated by blanks or line ends; a line that starts with "#" is a comment. On failure false,
/// with `script` untouched and `position` at the step that could not be read.
bool readEventScript(wstring const& text, EventScriptT& script, unsigned long& position);

/// The script as it reads back, a line for each step, every one ended by "\n".
wstring writeEventScript(EventScriptT const& script);
/// One step, without the line end.
wstring writeScriptStep(ScriptStepS const& step);

}  // namespace zolt::script
