#include "tests/support/stage.h"

#include <gtest/gtest.h>

#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

using namespace field;
using namespace script;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

StageC::StageC()
    : graphics_(
          (standardOperators(), new surfaces::RecordingGraphicsC(surfaces::RecordingGraphicsC::LOG_NOTHING))),
      field_(graphics_),
      runner_(field_) {}

StageC::StageC(std::string const& notation) : StageC() {
  EXPECT_TRUE(field_.setNotation(fromUtf8(notation))) << notation;
  EXPECT_EQ(this->notation(), notation) << "not a normal tree";
}

void StageC::turnOptionsOff() {
  InputOptionsS options;
  options.constructs = options.letters = options.leaving = options.impliedProducts = false;
  options.exponents = options.fractions = options.grouping = options.impliedBrackets = options.separation =
      false;
  field_.setOptions(options);
}

void StageC::show(std::string const& prefix, oss::PointerTC<math::algexpr::ConstraintsBC> constraints) {
  field_.setConstraints(nullptr);
  field_.setExpression(AlgebraicExpressionC::fromPrefixString(fromUtf8(prefix)));
  field_.setConstraints(std::move(constraints));
}

bool StageC::play(std::string const& script) { return play(toScript(script)); }

bool StageC::play(EventScriptT const& script) {
  bool taken = true;
  for (ScriptStepS const& step : script) {
    taken = runner_.run(step);
    refView().display(0, 0);
  }
  return taken;
}

std::string StageC::prefix() {
  auto const expression = field_.getExpression();
  return expression ? toUtf8(expression->toPrefixString()) : std::string();
}

std::string StageC::findFault() {
  TreeFaultS fault = validateTree(crefRoot());
  if (fault.invariant == TREE_VALID) fault = validateSelection(crefRoot(), refView().getSelection());
  if (fault.invariant != TREE_VALID) return toUtf8(describeInvariant(fault.invariant));

  // The incremental work since the last check must have the same result as doing everything at once.
  refView().compose({}, 0);
  refView().getExpressionSize();
  TreeT const fresh(crefRoot().clone());
  fresh->checkTree();
  if (describe(*fresh) != tree()) return "the tree is not normal";
  fresh->layout(surfaces::RecordingGraphicsC(surfaces::RecordingGraphicsC::LOG_NOTHING));
  return describeBoxes(*fresh) == describeBoxes(crefRoot()) ? "" : "the layout is not that of the whole tree";
}

EventScriptT toScript(std::string const& text) {
  EventScriptT script;
  unsigned long position = 0;
  EXPECT_TRUE(readEventScript(fromUtf8(text), script, position)) << text << " at " << position;
  return script;
}

}  // namespace zolt::tests
