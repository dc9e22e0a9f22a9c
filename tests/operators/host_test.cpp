#include <gtest/gtest.h>

#include "tests/operators/extra_operators.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

// A case is an expression that must come back through tree, bytes, notation and plain text, and its tree; or
// "type" with what a person types, and tree and expression.
TEST(HostOperators, AreShownTypedCopiedAndWrittenLikeOurs) {
  allOperators();
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/host.cases")) {
    SCOPED_TRACE(one.where);
    StageC stage;
    if (one.input.compare(0, 5, "type ") == 0) {
      for (char16_t const c : fromUtf8(one.input.substr(5))) EXPECT_TRUE(stage.refField().typeCharacter(c));
      EXPECT_EQ(stage.notation() + " " + stage.prefix(), one.expected);
      while (stage.refField().run(field::COMMAND_UNDO)) {
      }
      EXPECT_EQ(stage.notation(), "[\"‸\"]");
      continue;
    }
    auto const expression = AlgebraicExpressionC::fromPrefixString(fromUtf8(one.input));
    stage.refField().setExpression(expression);
    EXPECT_EQ(stage.tree(), one.expected);
    EXPECT_EQ(stage.prefix(), one.input);
    EXPECT_EQ(stage.findFault(), "");
    stage.refField().run(field::COMMAND_SELECT_ALL);
    field::ClipboardContentS const content = stage.refField().copy();
    StageC pasted;
    EXPECT_TRUE(pasted.refView().paste(content.bytes));
    EXPECT_EQ(pasted.tree(), one.expected);
    EXPECT_TRUE(pasted.refField().setNotation(stage.refField().writeNotation()));
    EXPECT_EQ(pasted.prefix(), one.input);
    auto const read = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
    EXPECT_TRUE(read && read->equals(*expression)) << toUtf8(exchange::toPlainText(*expression));
  }
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
