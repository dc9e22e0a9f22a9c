#pragma once

#include <functional>
#include <string>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/trees.h"
#include "zolt/algexpr/constraints.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::tests {

/// A formula field on the recording surface, with the standard operators, that is set up and read in tree
/// notation.
class StageC {
 public:
  StageC();
  /// Sets the tree up with its caret and selection as the first step of the history.
  explicit StageC(std::string const& notation);

  field::FormulaFieldC& refField() { return field_; }
  math::ved::ViewZNT4C& refView() { return field_.refView(); }
  math::ved::Node4C const& crefRoot() const { return field_.crefView().crefRoot(); }
  surfaces::RecordingGraphicsC& refGraphics() { return *graphics_; }

  /// Switches off what a field adds to a view: typed names and signs, leaving constructs, implied products.
  void turnOptionsOff();
  /// Shows an expression in prefix text. A field shows nothing for a text that cannot be read.
  void show(std::string const& prefix, oss::PointerTC<math::algexpr::ConstraintsBC> constraints = nullptr);

  /// Plays a script and paints after each step, as a host does. A script that cannot be read fails the
  /// running test. Returns the last step's answer.
  bool play(std::string const& script);
  bool play(field::EventScriptT const& script);
  std::string notation() const { return toUtf8(field_.writeNotation()); }
  /// Without caret and selection.
  std::string tree() const { return describe(crefRoot()); }
  oss::bytestring bytes() const { return writeBytes(crefRoot()); }
  /// The expression as prefix text; empty when there is none.
  std::string prefix();
  /// Empty, or what is wrong with the tree, the caret, the selection or the layout.
  std::string findFault();

 private:
  oss::PointerTC<surfaces::RecordingGraphicsC> graphics_;
  field::FormulaFieldC field_;
  script::ScriptRunnerC runner_;
};

/// A constraint by a function of the prefix text.
class RuleC final : public math::algexpr::ConstraintsBC {
 public:
  explicit RuleC(std::function<bool(std::string const&)> rule) : rule_(std::move(rule)) {}
  bool check(oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression) const override {
    return rule_(toUtf8(expression->toPrefixString()));
  }

 private:
  std::function<bool(std::string const&)> rule_;
};

field::EventScriptT toScript(std::string const& text);

}  // namespace zolt::tests
