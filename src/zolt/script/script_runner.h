#pragma once

#include "zolt/field/formula_field.h"
#include "zolt/script/event_script.h"

namespace zolt::script {

/// What a step of a script did.
struct StepReportS {
  ScriptStepS step;
  bool taken = false;  ///< whether the field took it; steps without an answer are always taken
  wstring notation;    ///< the formula afterwards, with caret and selection
};

/// Plays event scripts on a formula field, which is left with a clipboard of its own.
class ScriptRunnerC {
 public:
  explicit ScriptRunnerC(field::FormulaFieldC& field);

  bool run(ScriptStepS const& step);
  /// The last step's answer; true for an empty script.
  bool run(EventScriptT const& script);
  StepReportS runAndReport(ScriptStepS const& step);

 private:
  bool show(ScriptStepS const& step);
  bool paste(field::ClipboardContentS const& content);
  bool set(wstring const& option, bool on);
  /// Null when the step has no such place, or the formula.
  field::PlaceS find(ScriptStepS const& step, std::size_t number) const;

  field::FormulaFieldC& field_;
};

/// `char a → ["a‸"]`, with "refused" behind it when the step was.
wstring writeReport(StepReportS const& report);

}  // namespace zolt::script
