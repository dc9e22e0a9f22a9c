#include <gtest/gtest.h>

#include "tests/operators/extra_operators.h"
#include "tests/support/construct_cases.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/make_operation.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

TEST(HostOperators, AreShownTypedCopiedAndWrittenLikeOurs) {
  allOperators();
  checkConstructs(ZOLT_TEST_DATA "/host.cases");
}

TEST(HostOperators, KeepAnExponentOutOfTheirLastPart) {
  using namespace math::algexpr;
  allOperators();
  auto const power = makePower(makeFunction(u"anti", {makeNamed(u"x")}), makeNumber(u"2"));
  EXPECT_EQ(AlgebraicExpressionC(power, nullptr).toPrefixString(), u"^(_quietpos(anti(x)),2)");
}

TEST(HostOperators, OfAnUnknownVariantAreRefused) {
  allOperators();
  StageC stage;
  for (char16_t const* tree : {u"[\"\", grid 9<[\"\"]>, \"\"]", u"[\"\", grid x<[\"\"]>, \"\"]",
                               u"[\"\", sqrt 2<[\"\"]>, \"\"]", u"[\"\", grid 1<[\"\"]>, \"\"]"}) {
    EXPECT_FALSE(stage.refField().setNotation(tree)) << toUtf8(tree);
  }
}

}  // namespace
}  // namespace zolt::tests
