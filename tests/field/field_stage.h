#pragma once

#include <string>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/field/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::tests {

/// A formula field on the recording surface, with the standard operators, that is set up and read in tree
/// notation.
class FieldStageC {
 public:
  FieldStageC();
  /// Sets the tree up with its caret and selection as the first step of the history.
  explicit FieldStageC(std::string const& notation);

  field::FormulaFieldC& refField() { return field_; }
  surfaces::RecordingGraphicsC& refGraphics() { return *graphics_; }

  /// Plays a script; a script that does not read fails the running test. The last step's answer.
  bool play(std::string const& script);
  std::string notation() const { return toUtf8(field_.writeNotation()); }
  /// Without caret and selection.
  std::string tree() const;
  /// Empty, or what is wrong with the tree, the caret or the selection.
  std::string findFault() const;

 private:
  oss::PointerTC<surfaces::RecordingGraphicsC> graphics_;
  field::FormulaFieldC field_;
  field::ScriptRunnerC runner_;
};

/// Without the escapes of `toText`: tree notation and scripts have their own.
oss::wstring fromUtf8(std::string const& text);

field::EventScriptT toScript(std::string const& text);

/// All cases of the field's case files, `start | script ⇒ end` with `| refused` behind it when the last step
/// was refused; "=" is the start again.
struct FieldCaseS {
  std::string where;
  std::string start;
  std::string script;
  std::string end;
  bool refused = false;
};

std::vector<FieldCaseS> readFieldCases(std::string const& name);
std::vector<std::string> const& fieldCaseFiles();

}  // namespace zolt::tests
