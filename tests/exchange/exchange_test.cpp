#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/latex_operator.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/exchange/typst.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/mathjson/mathjson_operator.h"
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

/// A notation of others: its reader, its writer, and a part of a text that shows that an operator has no
/// form.
struct ExchangeS {
  ExpressionT (*read)(wstring const&, PointerTC<CASSessionBC>, ReadErrorS*);
  wstring (*write)(AlgebraicExpressionC const&);
  wstring formless;
};

ExchangeS const plain_text{fromPlainText, [](auto const& expression) { return toPlainText(expression); },
                           u"\""};
ExchangeS const latex{fromLatex, toLatex, u"\\text"};
ExchangeS const math_json{mathjson::fromMathJson, mathjson::toMathJson, u"zolt:"};

/// The line's expression if its text is read as the line says, else null.
ExpressionT readCase(ExchangeS const& exchange, tests::CaseS const& one) {
  wstring const text = tests::fromUtf8(one.input);
  ReadErrorS error;
  ExpressionT const expression = exchange.read(text, nullptr, &error);
  if (!expression) {
    EXPECT_EQ(one.expected, "error " + std::to_string(error.cause) + " " + std::to_string(error.begin) + "-" +
                                std::to_string(error.end));
    EXPECT_FALSE(error.message.empty());
    return nullptr;
  }
  EXPECT_EQ(one.expected, tests::toUtf8(expression->toPrefixString()));
  EXPECT_EQ(math::common::READ_ERROR_NONE, error.cause);
  wstring const written = exchange.write(*expression);
  EXPECT_TRUE(!one.isBoth || text == written) << tests::toUtf8(written);
  ExpressionT const again = exchange.read(written, nullptr, nullptr);
  EXPECT_TRUE(again && again->equals(*expression)) << tests::toUtf8(written);
  return expression;
}

TEST(Exchange, EveryOperatorHasAForm) {
  for (math::ved::OperatorBC const* const op : tests::operatorsOfExpressions()) {
    AlgebraicExpressionC const expression(tests::makeSample(*op), nullptr);
    for (ExchangeS const* exchange : {&plain_text, &latex, &math_json}) {
      wstring const text = exchange->write(expression);
      // ∂ and ∇ alone are in quotes, since without them they would take what comes after them.
      bool const isSign = exchange == &plain_text && (op->getName() == u"∂" || op->getName() == u"∇");
      EXPECT_EQ(!isSign, text.find(exchange->formless) == wstring::npos) << tests::toUtf8(text);
      ExpressionT const again = exchange->read(text, nullptr, nullptr);
      ASSERT_TRUE(again) << tests::toUtf8(text);
      EXPECT_EQ(tests::toUtf8(expression.toPrefixString()), tests::toUtf8(again->toPrefixString()));
    }
    if (op->getName() == u"error") continue;  // a function by this name everywhere
    wstring const typst = toTypst(expression);
    EXPECT_EQ(wstring::npos, typst.find(u'"' + op->getName() + u"\"(")) << tests::toUtf8(typst);
  }
}

// "⇔": the text is also what is written. "~ ": what the formula shows is not compared.
TEST(PlainText, Cases) {
  for (tests::CaseS one : tests::readCases(ZOLT_TEST_DATA "/plain.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    bool const hasFormula = one.input.compare(0, 2, "~ ") != 0;
    if (!hasFormula) one.input.erase(0, 2);
    ExpressionT const expression = readCase(plain_text, one);
    if (!expression || !hasFormula || toPlainText(*expression).find(u'"') != wstring::npos) continue;
    ExpressionT const edited = shownAndRead(expression);
    EXPECT_EQ(prefixWithoutBrackets(*expression), edited ? prefixWithoutBrackets(*edited) : "");
  }
}

TEST(Latex, Cases) {
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/latex.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    readCase(latex, one);
  }
}

TEST(MathJson, Cases) {
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/mathjson.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    readCase(math_json, one);
  }
}

TEST(Latex, UnknownCommandsNameTheNearestOne) {
  auto const message = [](wstring const& text) {
    ReadErrorS error;
    EXPECT_FALSE(fromLatex(text, nullptr, &error));
    return tests::toUtf8(error.message);
  };
  EXPECT_EQ("This command is not known, but \\frac is", message(u"\\farc{a}{b}"));
  EXPECT_EQ("This command is not known, but \\alpha is", message(u"a+\\alhpa+1"));
  EXPECT_EQ("This command is not known", message(u"\\qqqqqqqq"));
}

TEST(Latex, HostsAddOperators) {
  registerLatexOperator({u"in", LATEX_BETWEEN, 50, 2, u"\\in", {u"in", u"∈"}});
  registerLatexOperator({u"_grad", LATEX_BEFORE, 20, 1, u"\\nabla", {}});
  registerLatexOperator({u"adjoint", LATEX_AFTER, 5, 1, u"^{\\dagger}", {}});
  registerLatexOperator({u"RR", LATEX_ALONE, 0, 0, u"\\Reals", {}});
  registerLatexOperator({u"rank", LATEX_ARGUMENT, 0, 1, u"\\operatorname{rank}", {u"rank", u"rk"}});
  registerLatexOperator({u"pair", LATEX_BRACES, 0, 2, u"\\pair{#2}{#1}", {}});
  auto const read = [](wstring const& text) {
    ExpressionT const expression = fromLatex(text, nullptr);
    if (!expression) return tests::toUtf8(text);
    ExpressionT const again = fromLatex(toLatex(*expression), nullptr);
    EXPECT_TRUE(again && again->equals(*expression)) << tests::toUtf8(toLatex(*expression));
    return tests::toUtf8(expression->toPrefixString());
  };
  EXPECT_EQ("in(+(a,b),RR)", read(u"a+b \\in \\Reals"));
  EXPECT_EQ("in(a,*(b,_grad(c)))", read(u"a\\text{ in }b \\cdot \\nabla c"));
  EXPECT_EQ("*(^(x,2),adjoint(A))", read(u"x^2A^\\dagger"));
  EXPECT_EQ("rank(pair(a,b))", read(u"\\operatorname{rk}\\pair{b}a"));
  EXPECT_EQ("+(∇,in)", read(u"\\text{∇}+\\mathrm{\\text{in}}"));
}

TEST(Typst, Cases) {
  registerTypstOperator({u"dual", 1, 5, u"@1^*"});
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/typst.cases")) {
    SCOPED_TRACE(one.where);
    auto const expression = AlgebraicExpressionC::fromPrefixString(tests::fromUtf8(one.input));
    ASSERT_TRUE(expression);
    EXPECT_EQ(one.expected, tests::toUtf8(toTypst(*expression)));
  }
}

TEST(MathJson, HostsAddOperators) {
  mathjson::registerMathJsonOperator({u"rank", 1, u"MatrixRank", {u"Rank"}});
  auto const expression = mathjson::fromMathJson(u"[\"Add\",[\"Rank\",\"A\"],[\"zolt:Rank\",1]]", nullptr);
  ASSERT_TRUE(expression);
  EXPECT_EQ("+(rank(A),Rank(1))", tests::toUtf8(expression->toPrefixString()));
  EXPECT_EQ("[\"Add\",[\"MatrixRank\",\"A\"],[\"zolt:Rank\",1]]",
            tests::toUtf8(mathjson::toMathJson(*expression)));
}

TEST(Exchange, EmptyExpressionAndSession) {
  PointerTC<CASSessionBC> const session(new CASSessionBC);
  for (ExchangeS const* exchange : {&plain_text, &latex, &math_json}) {
    EXPECT_TRUE(exchange->write(AlgebraicExpressionC(nullptr, nullptr)).empty());
    EXPECT_EQ(session, exchange->read(u"1", session, nullptr)->getCASSession());
    EXPECT_FALSE(exchange->read(u")", session, nullptr));
  }
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
