#include <gtest/gtest.h>
#include <utf8.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/operators.h"
#include "tests/support/small_stack.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::exchange {
namespace {

using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::makeNumber;
using math::algexpr::NodeABC;

using NodeT = PointerTC<NodeABC>;
using ExpressionT = PointerTC<AlgebraicExpressionC>;

std::string shown(wstring const& text) { return utf8::utf16to8(text); }

wstring repeated(unsigned long count, wstring const& text) {
  wstring result;
  for (unsigned long i = 0; i < count; ++i) result += text;
  return result;
}

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
  return shown(AlgebraicExpressionC(withoutBrackets(expression.getNode()), nullptr).toPrefixString());
}

/// Through the formula on the screen and back.
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
    EXPECT_EQ(wstring::npos, text.find(u'"')) << shown(text);
    ExpressionT const again = fromPlainText(text, nullptr);
    ASSERT_TRUE(again) << shown(text);
    EXPECT_EQ(shown(expression.toPrefixString()), shown(again->toPrefixString()));
  }
}

TEST(PlainText, Cases) {
  std::ifstream in(ZOLT_TEST_DATA "/plain.cases");
  std::string line;
  std::string const to = "⇒";
  std::string const both = "⇔";
  int count = 0;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    bool const hasFormula = line.compare(0, 2, "~ ") != 0;
    if (!hasFormula) line.erase(0, 2);
    bool const isBoth = line.find(both) != std::string::npos;
    std::size_t const at = line.find(isBoth ? both : to);
    ASSERT_NE(std::string::npos, at) << "plain.cases:" << number;
    wstring const text = utf8::utf8to16(line.substr(0, at == 0 ? 0 : at - 1));
    std::string const expected = line.substr(at + to.size() + 1);
    ++count;

    PlainTextErrorS error;
    ExpressionT const expression = fromPlainText(text, nullptr, &error);
    std::string found;
    if (expression) {
      found = shown(expression->toPrefixString());
      EXPECT_EQ(PLAIN_TEXT_ERROR_NONE, error.cause);
      wstring const written = toPlainText(*expression);
      EXPECT_TRUE(!isBoth || text == written) << "plain.cases:" << number << " wrote " << shown(written);
      ExpressionT const again = fromPlainText(written, nullptr);
      EXPECT_TRUE(again && again->equals(*expression)) << "plain.cases:" << number;
      if (hasFormula && written.find(u'"') == wstring::npos) {
        ExpressionT const edited = shownAndRead(expression);
        EXPECT_EQ(prefixWithoutBrackets(*expression), edited ? prefixWithoutBrackets(*edited) : "")
            << "plain.cases:" << number;
      }
    } else {
      found = "error " + std::to_string(error.cause) + " " + std::to_string(error.begin) + "-" +
              std::to_string(error.end);
      EXPECT_FALSE(describe(error.cause).empty());
    }
    EXPECT_EQ(expected, found) << "plain.cases:" << number;
  }
  EXPECT_GT(count, 200);
}

TEST(PlainText, EmptyExpressionAndSession) {
  EXPECT_TRUE(toPlainText(AlgebraicExpressionC(nullptr, nullptr)).empty());
  PointerTC<CASSessionBC> const session(new CASSessionBC);
  EXPECT_EQ(session, fromPlainText(u"x", session)->getCASSession());
  EXPECT_FALSE(fromPlainText(u")", session));
}

TEST(PlainText, ReadableStyleWritesShownBracketsOnce) {
  auto const readable = [](wstring const& prefix) {
    return shown(toPlainText(*AlgebraicExpressionC::fromPrefixString(prefix), PLAIN_TEXT_READABLE));
  };
  EXPECT_EQ("(a+b)*c", readable(u"*(_quietpos(+(a,b)),c)"));
  EXPECT_EQ("(x)", readable(u"_quietpos(x)"));
  EXPECT_EQ("((x))", readable(u"_quietpos(_quietpos(x))"));
  EXPECT_EQ("(x^2)^3", readable(u"^(_quietpos(^(x,2)),3)"));
  EXPECT_EQ("(-2)!", readable(u"!(_quietpos(−2))"));
}

/// Random expressions over all that the library knows and names that need care.
class Expressions {
 public:
  explicit Expressions(unsigned seed) : random_(seed) {}

  NodeT make(unsigned size) {
    if (size <= 1) return leaf();
    auto const& [name, count] = pick(functions());
    // Now and then with a wrong number of arguments.
    unsigned const arity = random_() % 12 == 0 ? 1 + random_() % 4 : count;
    std::vector<NodeT> children;
    for (unsigned i = 0; i < arity; ++i) children.push_back(make((size - 1) / arity));
    return makeFunction(name, std::move(children));
  }

 private:
  using FunctionT = std::pair<wstring, unsigned>;

  static std::vector<FunctionT> const& functions() {
    static std::vector<FunctionT> const all{
        {u"+", 2},     {u"-", 2},     {u"*", 2},       {u"/", 2},         {u"div", 2},       {u"mod", 2},
        {u"_pos", 1},  {u"_neg", 1},  {u"_neg", 1},    {u"^", 2},         {u"^", 2},         {u"_rad", 1},
        {u"_deg", 1},  {u"!", 1},     {u"=", 2},       {u"<>", 2},        {u"<", 2},         {u">", 2},
        {u"<=", 2},    {u">=", 2},    {u"not", 1},     {u"and", 2},       {u"or", 2},        {u":=", 2},
        {u":>", 2},    {u"sqrt", 1},  {u"nthroot", 2}, {u"abs", 1},       {u"floor", 1},     {u"ceil", 1},
        {u"log", 2},   {u"log10", 1}, {u"diff", 2},    {u"integral", 4},  {u"sum", 4},       {u"where", 3},
        {u"error", 2}, {u"sin", 1},   {u"exp", 1},     {u"_quietpos", 1}, {u"_quietpos", 1}, {u"f", 2},
        {u"alpha", 1}, {u"int", 4},   {u"pi", 1},      {u"_PI", 1},       {u"a/b", 1},       {u"cbrt", 1}};
    return all;
  }

  NodeT leaf() {
    static std::vector<wstring> const texts{
        u"x",          u"y",   u"r",   u"o",  u"e",     u"_PI",    u"alpha", u"α",    u"π",   u"pi",
        u"sin",        u"not", u"mod", u"d",  u"error", u"int",    u"a/b",   u"x\"",  u"\"",  u"∞",
        u"x²",         u"+",   u"2",   u"−2", u"0.5",   u"−1.5E3", u"3.",    u"2e−5", u".25", u"007",
        u"\U0001D465", u"ʳ",   u"|x|", u"x1", u"1e+9",  u"_x",     u"[",     u"°C",   u"!"};
    wstring const& text = pick(texts);
    NodeT const number = makeNumber(text);
    return number ? number : makeNamed(text);
  }

  template <class T>
  T const& pick(std::vector<T> const& all) {
    return all[random_() % all.size()];
  }

  std::mt19937 random_;
};

TEST(PlainText, EveryExpressionReadsBack) {
  Expressions expressions(20240608);
  for (unsigned round = 0; round < 20000; ++round) {
    AlgebraicExpressionC const expression(expressions.make(1 + round % 14), nullptr);
    wstring const text = toPlainText(expression);
    ExpressionT const again = fromPlainText(text, nullptr);
    ASSERT_TRUE(again) << shown(text) << " for " << shown(expression.toPrefixString());
    ASSERT_EQ(shown(expression.toPrefixString()), shown(again->toPrefixString())) << shown(text);

    ExpressionT const readable = fromPlainText(toPlainText(expression, PLAIN_TEXT_READABLE), nullptr);
    ASSERT_TRUE(readable) << shown(expression.toPrefixString());
  }
}

TEST(PlainText, AnyTextIsReadOrRefusedInPlace) {
  static std::vector<wstring> const pieces{u"a",     u"b",     u"x ", u"2",          u"3.5",
                                           u"1e",    u".",     u"(",  u")",          u"(",
                                           u")",     u"[",     u"]",  u"|",          u"|",
                                           u"⌊",     u"⌋",     u",",  u"+",          u"-",
                                           u"−",     u"*",     u"/",  u"^",          u"!",
                                           u"°",     u"²",     u"⁻¹", u"√",          u"π",
                                           u"=",     u"<",     u">",  u" ",          u" or ",
                                           u" not ", u"mod ",  u"f(", u"sin",        u"sin ",
                                           u"log(",  u"sum(",  u"pi", u"alpha",      u":=",
                                           u"\"",    u"\"q\"", u"#",  u"\U0001F600", wstring(1, u'\0')};
  std::mt19937 random(20240609);
  unsigned long numRead = 0;
  for (int round = 0; round < 60000; ++round) {
    wstring text;
    for (unsigned long n = random() % 10; n > 0; --n)
      text += pieces[random() % (round % 2 == 0 ? 40 : pieces.size())];
    PlainTextErrorS error;
    ExpressionT const expression = fromPlainText(text, nullptr, &error);
    if (expression) {
      ++numRead;
      wstring const written = toPlainText(*expression);
      ExpressionT const again = fromPlainText(written, nullptr);
      ASSERT_TRUE(again && again->equals(*expression)) << shown(text) << " gave " << shown(written);
      ASSERT_EQ(shown(written), shown(toPlainText(*again)));
    } else {
      EXPECT_NE(PLAIN_TEXT_ERROR_NONE, error.cause);
      EXPECT_TRUE(error.begin <= error.end && error.end <= text.size()) << shown(text);
      EXPECT_EQ(error.begin == error.end, error.begin == text.size()) << shown(text);
    }
  }
  EXPECT_GT(numRead, 2000u);
}

// Long and deep texts are read and written on a small stack, and come out as long as their shape asks for.
TEST(PlainText, LengthAndDepth) {
  constexpr unsigned long terms = 100000;
  constexpr unsigned long depth = 20000;
  std::vector<wstring> const canonical{
      u"a" + repeated(terms, u"+b"),
      u"a" + repeated(depth, u"^b"),
      u"a" + repeated(depth, u"!"),
      repeated(depth, u"not ") + u"a",
      repeated(depth, u"f(a,") + u"a" + repeated(depth, u")"),
      repeated(depth, u"(a+") + u"b" + repeated(depth, u")*c"),
      repeated(depth, u"-(") + u"-a" + repeated(depth, u")"),
      repeated(depth, u"(") + u"a" + repeated(depth, u")"),
      u"f(a" + repeated(depth, u",b") + u")",
  };
  std::vector<wstring> const others{
      repeated(depth, u"-") + u"a",     repeated(depth, u"√") + u"2",
      repeated(depth, u"sin ") + u"x",  repeated(depth, u"|a+") + u"b" + repeated(depth, u"|"),
      repeated(depth, u"a "),           repeated(depth, u"2^-") + u"x",
      repeated(depth, u"sin x "),       repeated(depth, u"[") + u"a" + repeated(depth, u"]"),
      u"sin " + repeated(depth, u"a "),
  };
  tests::onSmallStack([&] {
    for (wstring const& text : canonical) {
      ExpressionT const expression = fromPlainText(text, nullptr);
      ASSERT_TRUE(expression) << shown(text.substr(0, 20));
      EXPECT_TRUE(text == toPlainText(*expression)) << shown(text.substr(0, 20));
    }
    for (wstring const& text : others) {
      ExpressionT const expression = fromPlainText(text, nullptr);
      ASSERT_TRUE(expression) << shown(text.substr(0, 20));
      wstring const written = toPlainText(*expression);
      EXPECT_LE(written.size(), 6 * text.size() + 8) << shown(text.substr(0, 20));
      ExpressionT const again = fromPlainText(written, nullptr);
      ASSERT_TRUE(again && again->equals(*expression)) << shown(text.substr(0, 20));
    }
  });
}

}  // namespace
}  // namespace zolt::exchange
