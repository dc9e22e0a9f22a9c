// Matrices, determinants and cases: what they are read as and how they are edited.

#include <gtest/gtest.h>

#include "tests/support/stage.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/ved.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

OperatorListC& extendedOperators() {
  static OperatorListC& operators = []() -> OperatorListC& {
    catalogue_extended::registerExtendedOperators(standardOperators());
    return standardOperators();
  }();
  return operators;
}

// A case is an expression, which comes back through tree, bytes and notation, and its tree; or a tree, a
// script and what the script makes of it, which undo takes back.
TEST(Tables, AreShownAndEdited) {
  extendedOperators();
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/tables.cases")) {
    SCOPED_TRACE(one.where);
    std::size_t const script = one.input.find(" :: ");
    if (script == std::string::npos) {
      auto const expression = AlgebraicExpressionC::fromPrefixString(fromUtf8(one.input));
      StageC stage;
      ASSERT_TRUE(stage.refField().setExpression(expression));
      EXPECT_EQ(stage.tree(), one.expected);
      EXPECT_EQ(stage.prefix(), one.input);
      EXPECT_EQ(stage.findFault(), "");
      StageC pasted;
      EXPECT_TRUE(pasted.refField().paste(stage.refField().copy()) == field::PASTE_DONE);
      EXPECT_EQ(pasted.tree(), one.expected);
      continue;
    }
    StageC stage(one.input.substr(0, script));
    std::string const before = stage.tree();
    stage.play(one.input.substr(script + 4));
    EXPECT_EQ(stage.notation(), one.expected);
    EXPECT_EQ(stage.findFault(), "");
    std::string const after = stage.tree();
    while (stage.tree() != before && stage.refField().run(field::COMMAND_UNDO)) {
    }
    EXPECT_EQ(stage.tree(), before);
    while (stage.refField().run(field::COMMAND_REDO)) {
    }
    EXPECT_EQ(stage.tree(), after);
  }
}

}  // namespace
}  // namespace zolt::tests
