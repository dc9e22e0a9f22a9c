#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::exchange {
namespace {

using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::NodeABC;

using NodeT = PointerTC<NodeABC>;
using ExpressionT = PointerTC<AlgebraicExpressionC>;

/// The node without the brackets that change nothing.
NodeT withoutBrackets(NodeT const& node) {
  math::algexpr::ParentNodeABC const* const parent = node->asParent();
  if (!parent) return node;
  if (parent->crefName() == u"_quietpos") return withoutBrackets(parent->childPointer(0));
  std::vector<NodeT> children;
  for (unsigned long i = 0; i < parent->numChildren(); ++i) {
    children.push_back(withoutBrackets(parent->childPointer(i)));
  }
  return makeFunction(parent->crefName(), std::move(children));
}

std::string prefixWithoutBrackets(AlgebraicExpressionC const& expression) {
  return tests::toUtf8(AlgebraicExpressionC(withoutBrackets(expression.getNode()), nullptr).toPrefixString());
}

/// Converts the expression to the formula on the screen and back.
ExpressionT shownAndRead(ExpressionT const& expression) {
  tests::standardOperators();
  std::unique_ptr<math::ved::Node4C> const tree(
      math::ved::Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
  return tree->getAlgebraicExpression(nullptr);
}

TEST(PlainText, EveryStandardOperatorHasAForm) {
  for (auto const& [name, op] : tests::standardOperators().crefByName()) {
    NodeT node = makeNamed(name);
    if (op->getArity() > 0) {
      std::vector<NodeT> arguments;
      for (unsigned long i = 0; i < op->getArity(); ++i)
        arguments.push_back(makeNamed(wstring(1, u'a' + char16_t(i))));
      node = makeFunction(name, std::move(arguments));
    }
    AlgebraicExpressionC const expression(node, nullptr);
    wstring const text = toPlainText(expression);
    EXPECT_EQ(wstring::npos, text.find(u'"')) << tests::toUtf8(text);
    ExpressionT const again = fromPlainText(text, nullptr);
    ASSERT_TRUE(again) << tests::toUtf8(text);
    EXPECT_EQ(tests::toUtf8(expression.toPrefixString()), tests::toUtf8(again->toPrefixString()));
  }
}

// "⇔": the text is also what is written. "~ ": what the formula shows is not compared.
TEST(PlainText, Cases) {
  for (tests::CaseS one : tests::readCases(ZOLT_TEST_DATA "/plain.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    bool const hasFormula = one.input.compare(0, 2, "~ ") != 0;
    if (!hasFormula) one.input.erase(0, 2);
    wstring const text = tests::fromUtf8(one.input);
    ReadErrorS error;
    ExpressionT const expression = fromPlainText(text, nullptr, &error);
    if (!expression) {
      EXPECT_EQ(one.expected, "error " + std::to_string(error.cause) + " " + std::to_string(error.begin) +
                                  "-" + std::to_string(error.end));
      EXPECT_FALSE(error.message.empty());
      continue;
    }
    EXPECT_EQ(one.expected, tests::toUtf8(expression->toPrefixString()));
    EXPECT_EQ(math::common::READ_ERROR_NONE, error.cause);
    wstring const written = toPlainText(*expression);
    EXPECT_TRUE(!one.isBoth || text == written) << tests::toUtf8(written);
    ExpressionT const again = fromPlainText(written, nullptr);
    EXPECT_TRUE(again && again->equals(*expression));
    if (!hasFormula || written.find(u'"') != wstring::npos) continue;
    ExpressionT const edited = shownAndRead(expression);
    EXPECT_EQ(prefixWithoutBrackets(*expression), edited ? prefixWithoutBrackets(*edited) : "");
  }
}

TEST(PlainText, EmptyExpressionAndSession) {
  EXPECT_TRUE(toPlainText(AlgebraicExpressionC(nullptr, nullptr)).empty());
  PointerTC<CASSessionBC> const session(new CASSessionBC);
  EXPECT_EQ(session, fromPlainText(u"x", session)->getCASSession());
  EXPECT_FALSE(fromPlainText(u")", session));
}

TEST(PlainText, ReadableStyleWritesShownBracketsOnce) {
  auto const readable = [](wstring const& prefix) {
    return tests::toUtf8(toPlainText(*AlgebraicExpressionC::fromPrefixString(prefix), PLAIN_TEXT_READABLE));
  };
  EXPECT_EQ("(a+b)*c", readable(u"*(_quietpos(+(a,b)),c)"));
  EXPECT_EQ("(x)", readable(u"_quietpos(x)"));
  EXPECT_EQ("((x))", readable(u"_quietpos(_quietpos(x))"));
  EXPECT_EQ("(x^2)^3", readable(u"^(_quietpos(^(x,2)),3)"));
  EXPECT_EQ("(-2)!", readable(u"!(_quietpos(−2))"));
}

}  // namespace
}  // namespace zolt::exchange
