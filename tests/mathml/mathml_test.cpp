#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "tests/exchange/random_notation.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/small_stack.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/latex_operator.h"
#include "zolt/exchange/markup.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/mathml/content_operator.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::mathml {
namespace {

using tests::fromUtf8;
using tests::nest;
using tests::repeat;
using tests::toUtf8;
using ExpressionT = PointerTC<AlgebraicExpressionC>;

wstring const math_begin = u"<math xmlns=\"http://www.w3.org/1998/Math/MathML\" display=\"block\">";
wstring const math_end = u"</math>";

std::string prefixOf(wstring const& text) {
  ReadErrorS error;
  ExpressionT const expression = fromMathmlText(text, nullptr, &error);
  if (expression) return toUtf8(expression->toPrefixString());
  EXPECT_LE(error.begin, error.end);
  EXPECT_LE(error.end, text.size());
  EXPECT_FALSE(error.message.empty());
  return "error " + std::to_string(error.cause);
}

/// Both forms of an expression read back to it.
void expectTrips(AlgebraicExpressionC const& expression) {
  for (wstring const& text :
       {toMathml(expression), toMathml(expression, MATHML_ANNOTATED), toContentMathml(expression)}) {
    ReadErrorS error;
    ExpressionT const again = fromMathmlText(text, nullptr, &error);
    EXPECT_TRUE(again && again->equals(expression))
        << toUtf8(expression.toPrefixString()) << '\n'
        << toUtf8(text) << '\n'
        << (again ? toUtf8(again->toPrefixString()) : toUtf8(error.message));
  }
}

TEST(Mathml, Cases) {
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/mathml.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    ReadErrorS error;
    wstring const text = math_begin + fromUtf8(one.input) + math_end;
    ExpressionT const expression = fromMathmlText(text, nullptr, &error);
    if (!expression) {
      unsigned long const before = math_begin.size();
      EXPECT_EQ(one.expected, "error " + std::to_string(error.cause) + " " +
                                  std::to_string(error.begin - before) + "-" +
                                  std::to_string(error.end - before));
      continue;
    }
    EXPECT_EQ(one.expected, toUtf8(expression->toPrefixString()));
    if (one.isBoth) {
      EXPECT_EQ(toUtf8(text), toUtf8(toMathml(*expression)));
    }
    expectTrips(*expression);
  }
}

TEST(Mathml, RandomExpressionsComeBack) {
  tests::RandomNotationC random(21);
  for (unsigned i = 0; i < 2500 && !testing::Test::HasFailure(); ++i)
    expectTrips(AlgebraicExpressionC(random.make(1 + i % 24), nullptr));
}

// What the other notations are tested with.
TEST(Mathml, ExpressionsOfOtherNotationsComeBack) {
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/../exchange/latex.cases")) {
    if (ExpressionT const expression = exchange::fromLatex(fromUtf8(one.input), nullptr))
      expectTrips(*expression);
  }
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/../exchange/plain.cases")) {
    if (ExpressionT const expression = exchange::fromPlainText(fromUtf8(one.input), nullptr))
      expectTrips(*expression);
  }
}

void expectOperators() {
  for (math::ved::OperatorBC const* const op : tests::operatorsOfExpressions()) {
    AlgebraicExpressionC const expression(tests::makeSample(*op), nullptr);
    expectTrips(expression);
    if (op->getName() == u"error") continue;  // a function by this name everywhere
    EXPECT_EQ(wstring::npos, toMathml(expression).find(u"data-name")) << toUtf8(op->getName());
    EXPECT_EQ(wstring::npos, toContentMathml(expression).find(u"type=\"function\"")) << toUtf8(op->getName());
  }
}

TEST(Mathml, HostsAddOperatorsWithTheRowForLatex) {
  exchange::registerLatexOperator({u"_circ", exchange::LATEX_BETWEEN, 20, 2, u"\\circledast", {u"⊛"}});
  exchange::registerLatexOperator({u"pair", exchange::LATEX_BRACES, 0, 2, u"\\pair{#2}{#1}", {}});
  exchange::registerLatexOperator({u"adjoint", exchange::LATEX_AFTER, 5, 1, u"^{\\dagger}", {}});
  EXPECT_EQ("_circ(a,b)", prefixOf(u"<math><mi>a</mi><mo>⊛</mo><mi>b</mi></math>"));
  expectTrips(*AlgebraicExpressionC::fromPrefixString(u"_circ(pair(a,b),adjoint(c))"));
}

TEST(Mathml, HostsAddSymbolsAndElementsOfContent) {
  registerContentOperator({u"rank", 1, u"rk", u"linalg4"});
  registerContentOperator({u"cross", 2, u"vectorproduct", {}});
  registerContentOperator({u"φ₀", 0, u"golden", u"nums9"});
  wstring const text =
      u"<apply><vectorproduct/><apply><csymbol cd=\"linalg4\">rk</csymbol><ci>A</ci></apply>"
      u"<csymbol cd=\"nums9\">golden</csymbol></apply>";
  ExpressionT const expression = AlgebraicExpressionC::fromPrefixString(u"cross(rank(A),φ₀)");
  EXPECT_NE(wstring::npos, toContentMathml(*expression).find(text)) << toUtf8(toContentMathml(*expression));
  expectTrips(*expression);
  // Of another dictionary, or with other operands, it is the name that it is.
  EXPECT_EQ("+(rk(A),rk(A,B))",
            prefixOf(u"<math><apply><plus/><apply><csymbol>rk</csymbol><ci>A</ci></apply><apply>"
                     u"<csymbol cd='linalg4'>rk</csymbol><ci>A</ci><ci>B</ci></apply></apply></math>"));
}

TEST(Mathml, PageAroundIsLeftOut) {
  EXPECT_EQ("x", prefixOf(u"<!DOCTYPE html><!-- <math> --><p>a &copy <br> <math><mi>x</mi></math> b</p>"));
  EXPECT_EQ("x", prefixOf(u"<m:math xmlns:m=\"urn:x\"><m:mi>x</m:mi></m:math>"));
  EXPECT_EQ(
      "x",
      prefixOf(u"<?xml version='1.0' encoding='UTF-8'?><math><mi><![CDATA[x]]></mi><!-- y --></math>\n"));
  EXPECT_EQ("error 14", prefixOf(u"<math><mi>x</mi></math> y"));
  EXPECT_EQ("error 14", prefixOf(u"<p><math><mi>x</mi></math><math><mi>x</mi></math>"));
  EXPECT_EQ("error 23", prefixOf(u"<math><mi>x</mi>"));
  EXPECT_EQ("error 23", prefixOf(u"x"));
  EXPECT_EQ("error 1", prefixOf(u" \n"));
  EXPECT_EQ("error 1", prefixOf(u"<math></math>"));
  // An entity that a document declares is none.
  EXPECT_EQ("error 2",
            prefixOf(u"<!DOCTYPE m [<!ENTITY a \"x\"><!ENTITY b \"&a;&a;\">]><math><mi>&b;</mi></math>"));
  EXPECT_EQ("error 23", prefixOf(u"<math><!DOCTYPE m [<!ENTITY a \"x\">]><mi>x</mi></math>"));
}

TEST(Mathml, FaultsNameTheElement) {
  ReadErrorS error;
  EXPECT_FALSE(fromMathmlText(u"<math>&alpha;<mi>&beta;</mi></math>", nullptr, &error));
  EXPECT_EQ(0u, error.begin);
  EXPECT_FALSE(fromMathmlText(u"<math><mo>&pm;</mo><mi>x</mi><mfrac><mi>x</mi><mrow/></mfrac></math>",
                              nullptr, &error));
  EXPECT_EQ("An operand is missing, in math/mfrac[3]/mrow[2]", toUtf8(error.message));
  EXPECT_EQ(46u, error.begin);
}

TEST(Mathml, Encodings) {
  auto const decoded = [](std::string const& bytes) {
    wstring text;
    bool const isText = decodeXml(oss::bytestring(bytes.begin(), bytes.end()), text);
    return isText ? toUtf8(text) : "no text";
  };
  using namespace std::string_literals;
  EXPECT_EQ("é", decoded("\xFF\xFE\xE9\x00"s));
  EXPECT_EQ("é", decoded("\xFE\xFF\x00\xE9"s));
  EXPECT_EQ("<a", decoded("<\x00"s + "a\x00"s));
  EXPECT_EQ("é", decoded("\xEF\xBB\xBF\xC3\xA9"));
  EXPECT_EQ("<?xml encoding='ISO-8859-1'?>é", decoded("<?xml encoding='ISO-8859-1'?>\xE9"));
  EXPECT_EQ("no text", decoded("<?xml encoding=\"koi8-r\"?>"));
  EXPECT_EQ("no text", decoded("\xE9"));
  EXPECT_EQ("no text", decoded("\xFF\xFE\xE9"));
}

TEST(Mathml, DeepAndLongOnes) {
  tests::onSmallStack([] {
    constexpr unsigned long depth = 20000;
    EXPECT_EQ("x", prefixOf(u"<math>" + nest(depth, u"<mrow>", u"<mi>x</mi>", u"</mrow>") + math_end));
    EXPECT_EQ("x", prefixOf(u"<math>" + nest(depth, u"<mstyle>", u"<mi>x</mi>", u"</mstyle>") + math_end));
    for (wstring const& prefix : {nest(depth, u"sqrt(", u"x", u")"), nest(depth, u"^(x,", u"x", u")"),
                                  nest(depth, u"f(", u"x", u")"), nest(depth, u"+(", u"x", u",1)")}) {
      ExpressionT const expression = AlgebraicExpressionC::fromPrefixString(prefix);
      for (wstring const& text : {toMathml(*expression), toContentMathml(*expression)}) {
        ExpressionT const again = fromMathmlText(text, nullptr);
        EXPECT_TRUE(again && again->equals(*expression));
      }
    }
  });
}

// producers.sh has the file made: a formula in LaTeX, the program, its MathML, with tabs between them.
TEST(Mathml, OfOtherPrograms) {
  char const* const path = std::getenv("ZOLT_MADE_MATHML");
  if (!path) GTEST_SKIP() << "mathml.producers runs it";
  std::ifstream in(path);
  int count = 0;
  for (std::string line; std::getline(in, line); ++count) {
    std::size_t const first = line.find('\t');
    std::size_t const second = line.find('\t', first + 1);
    ExpressionT const expected = exchange::fromLatex(fromUtf8(line.substr(0, first)), nullptr);
    ASSERT_TRUE(expected) << line;
    wstring const made = fromUtf8(line.substr(second + 1));
    EXPECT_EQ(toUtf8(expected->toPrefixString()), prefixOf(made)) << line;
    // Whole pages have the LaTeX, too.
    if (line.compare(first + 1, 9, "katexPage") != 0) continue;
    ExpressionT const kept = exchange::fromLatex(exchange::findPageLatex(made), nullptr);
    EXPECT_TRUE(kept && kept->equals(*expected)) << line;
  }
  EXPECT_GE(count, 600);
}

// What feeds a tree by itself, as a browser does, need not balance it.
TEST(Mathml, TreesOfOthers) {
  MathmlTreeC tree;
  EXPECT_FALSE(tree.isComplete());
  tree.open(u"math", 3);
  tree.open(u"mi", 9);
  tree.addText(u" x");
  tree.open(u"b", 15);
  tree.addText(u"y\n");
  EXPECT_TRUE(tree.close(20) && tree.close(22));
  EXPECT_FALSE(tree.isComplete());
  EXPECT_TRUE(tree.close(30));
  EXPECT_FALSE(tree.close(31));
  EXPECT_TRUE(tree.isComplete());
  EXPECT_EQ("xy", toUtf8(fromMathml(tree, nullptr)->toPrefixString()));
}

// Last, since the signs are for the whole process.
TEST(Mathml, EveryOperatorComesBack) {
  math::ved::OperatorListC& operators = tests::standardOperators();
  expectOperators();
  catalogue_extended::registerExtendedOperators(operators);
  expectOperators();
  for (wstring const prefix : {u"product(k,1,n,f)",
                               u"limit(f,x,a)",
                               u"limit(f,x,a,1)",
                               u"limit(f,x,+(a,b),\u22121)",
                               u"antiderivative(f,x)",
                               u"diffn(f,x,n)",
                               u"pdiff(f,x)",
                               u"pdiff(pdiff(f,y),x)",
                               u"pdiffn(f,x,2)",
                               u"*(binomial(n,k),norm(x))",
                               u"index(a,i)",
                               u"^(index(a,+(i,1),j),2)",
                               u"+(conj(x),vec(+(a,b)))",
                               u"*(hat(x),dot(x_1))",
                               u"*(matrix(list(a,/(1,2)),list(c,d)),matrix(list(x),list(y)))",
                               u"^(matrix(list(a,b)),\u22121)",
                               u"det(list(a,b),list(c,d))",
                               u"det(matrix(list(a,b),list(c,d)))",
                               u"det(A)",
                               u"matrix(a,list(b))",
                               u"=(f(x),cases(list(x,>(x,0)),list(0,otherwise)))",
                               u"in(x,set(a,b))",
                               u"union(set(a),set(1,2,3))",
                               u"in(x,interval(a,b,1,1))",
                               u"interval(0,1,0,1)",
                               u"interval(0,∞,1,0)",
                               u"interval(0,1,0,0)",
                               u"iff(implies(p,q),notin(x,∅))",
                               u"+(percent(5),permille(x))",
                               u":>(x,to(y,z))"}) {
    expectTrips(*AlgebraicExpressionC::fromPrefixString(prefix));
  }
  EXPECT_EQ(
      "*(pdiff(f,x),pdiff(pdiff(g,y),x))",
      toUtf8(exchange::fromLatex(
                 u"{\\partial f \\over \\partial x}{\\partial^2 g \\over \\partial x\\,\\partial y}", nullptr)
                 ->toPrefixString()));
  // What other programs write of these.
  EXPECT_EQ("set(a,b)", prefixOf(u"<math><mo>{</mo><mi>a</mi><mo>,</mo><mi>b</mi><mo>}</mo></math>"));
  EXPECT_EQ(
      "matrix(list(a,b))",
      prefixOf(u"<math><mfenced open='[' close=']'><mtable><mtr><mtd><mi>a</mi></mtd><mtd><mi>b</mi></mtd>"
               u"</mtr></mtable></mfenced></math>"));
}

}  // namespace
}  // namespace zolt::mathml
