#pragma once

#include "zolt/field/formula_field.h"
#include "zolt/script/event_script.h"

namespace zolt::script {

/// What a step of a script did.
struct StepReportS {
  ScriptStepS step;
  bool taken = false;  ///< whether the field accepted it; true for steps without an answer
  wstring notation;    ///< the formula afterwards, with caret and selection
};

/// Plays event scripts on a formula field. The constructor gives the field a new clipboard for good.
class ScriptRunnerC {
 public:
  explicit ScriptRunnerC(field::FormulaFieldC& field);

  bool run(ScriptStepS const& step);
  /// Plays all steps and returns the last step's answer; true for an empty script.
  bool run(EventScriptT const& script);
  StepReportS runAndReport(ScriptStepS const& step);

 private:
  bool show(ScriptStepS const& step);
  bool set(wstring const& option, bool on);
  void setNames(wstring const& text);
  /// Null when the step has no such place or it is not in the formula.
  field::PlaceS find(ScriptStepS const& step, std::size_t number) const;

  field::FormulaFieldC& field_;
};

/// `char a → ["a‸"]`, followed by "refused" when the step was refused.
wstring writeReport(StepReportS const& report);

}  // namespace zolt::script
