#pragma once

#include "zolt/field/event_script.h"
#include "zolt/field/formula_field.h"

namespace zolt::field {

/// What a step of a script did.
struct StepReportS {
  ScriptStepS step;
  bool taken = false;  ///< whether the field took it; steps without an answer are always taken
  wstring notation;    ///< the formula afterwards, with caret and selection
};

/// Plays event scripts on a formula field, which is left with a clipboard of its own.
class ScriptRunnerC {
 public:
  explicit ScriptRunnerC(FormulaFieldC& field);

  bool run(ScriptStepS const& step);
  /// The last step's answer; true for an empty script.
  bool run(EventScriptT const& script);
  StepReportS runAndReport(ScriptStepS const& step);

 private:
  bool show(ScriptStepS const& step);
  bool paste(ClipboardContentS const& content);
  bool set(wstring const& option, bool on);
  /// Null when the step has no such place, or the formula.
  PlaceS find(ScriptStepS const& step, std::size_t number) const;

  FormulaFieldC& field_;
};

/// `char a → ["a‸"]`, with "refused" behind it when the step was.
wstring writeReport(StepReportS const& report);

}  // namespace zolt::field
