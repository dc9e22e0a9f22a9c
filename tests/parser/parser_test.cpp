#include <gtest/gtest.h>
#include <utf8.h>

#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/support/small_stack.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/operators/operator_binary_infix.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/operators/operator_unary_prefix.h"
#include "zolt/ved/parser/detail/infix_parser.h"
#include "zolt/ved/parser/lexical_analyser.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

using algexpr::AlgebraicExpressionC;

detail::RuleE ruleOf(std::string const& name) {
  static std::map<std::string, detail::RuleE> const rules{{"assignment", detail::RULE_ASSIGNMENT},
                                                          {"or", detail::RULE_OR},
                                                          {"and", detail::RULE_AND},
                                                          {"not", detail::RULE_NOT},
                                                          {"equation", detail::RULE_EQUATION},
                                                          {"expression", detail::RULE_EXPRESSION},
                                                          {"term", detail::RULE_TERM},
                                                          {"factor", detail::RULE_FACTOR},
                                                          {"unaryTerm", detail::RULE_UNARY_TERM},
                                                          {"fact", detail::RULE_FACT},
                                                          {"atom", detail::RULE_ATOM}};
  return rules.at(name);
}

wstring repeated(unsigned long count, wstring const& text) {
  wstring result;
  for (unsigned long i = 0; i < count; ++i) result += text;
  return result;
}

struct CaseS {
  int line;
  std::string infix;
  std::string expected;

  wstring text() const {
    std::string plain;
    for (std::size_t i = 0; i < infix.size(); ++i) {
      if (infix[i] != '\\') {
        plain += infix[i];
      } else {
        plain += infix[++i] == '0' ? '\0' : '\t';
      }
    }
    return utf8::utf8to16(plain);
  }
};

std::string escaped(wstring const& text) {
  std::string result;
  for (char const c : utf8::utf16to8(text)) result += c == '\t' ? std::string("\\t") : std::string(1, c);
  return result;
}

std::vector<CaseS> readCases(std::string const& file) {
  std::ifstream in(std::string(ZOLT_TEST_DATA "/") + file);
  std::vector<CaseS> cases;
  std::string line;
  std::string const arrow = "⇒";
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    std::size_t const at = line.find(arrow);
    if (at == std::string::npos) {
      ADD_FAILURE() << file << ":" << number << " has no " << arrow;
      continue;
    }
    std::size_t const behind = at + arrow.size();
    cases.push_back(
        {number, line.substr(0, at == 0 ? 0 : at - 1), line.substr(std::min(line.size(), behind + 1))});
  }
  EXPECT_FALSE(cases.empty()) << file;
  return cases;
}

class ParserTest : public testing::Test {
 protected:
  ParserTest() {
    PointerTC<OperatorListC> const operators =
        OperatorListRepositoryC::lookup(algexpr::CASSessionBC::getSession()->getEngine());
    auto const addInfix = [&](wstring const& name, wstring const& text) {
      operators->add(new OperatorBinaryInfixC(name, text, 10, true, true, true, 0));
    };
    auto const addFunction = [&](wstring const& name, wstring const& text, unsigned long arity) {
      operators->add(new OperatorBC(name, text, arity, 0, false, true, 0));
    };
    for (auto const* word : {u"or", u"and", u"div", u"mod"}) addInfix(word, word);
    // A text of its own, known by the name behind it.
    addInfix(u"mod", u"rest");
    operators->add(new OperatorUnaryPrefixC(u"not", u"not", 10, true, true, 0));
    addFunction(u"sin", u"sin", 1);
    addFunction(u"area", u"area", 3);
    addFunction(u"unit", u"unit", 0);
    addFunction(u"r", u"word_r", 0);
  }
};

TEST_F(ParserTest, Tokens) {
  static char const* const kinds[] = {
      "end",         "name",    "word",           "number", "pi",         "open",     "close",    "comma",
      "plus",        "minus",   "times",          "power",  "factorial",  "equal",    "notEqual", "less",
      "lessOrEqual", "greater", "greaterOrEqual", "store",  "assignment", "verbatim", "nul"};
  for (CaseS const& one : readCases("lexer.cases")) {
    wstring const text = one.text();
    LexicalAnalyserC lexer(text);
    std::string tokens;
    unsigned int start = 0;
    unsigned int end = 0;
    while (lexer.getCurrentTokenType() != TOKEN_END) {
      if (!tokens.empty()) tokens += ", ";
      tokens += kinds[lexer.getCurrentTokenType()];
      wstring const token = lexer.getCurrentToken();
      tokens += token.empty() ? " " : "(" + escaped(token) + ")";
      lexer.getCurrentTokenPosition(start, end);
      tokens += std::to_string(start) + "-" + std::to_string(end);
      EXPECT_EQ(lexer.getCurrentTokenType() == TOKEN_OPERATOR_WORD, bool(lexer.getCurrentTokenOperator()));
      lexer.readNextToken();
    }
    EXPECT_EQ(one.expected, tokens) << "lexer.cases:" << one.line;
    for (int again = 0; again < 2; ++again) {
      lexer.readNextToken();
      lexer.getCurrentTokenPosition(start, end);
      EXPECT_EQ(TOKEN_END, lexer.getCurrentTokenType());
      EXPECT_TRUE(lexer.getCurrentToken().empty());
      EXPECT_TRUE(start == text.size() && end == text.size()) << "lexer.cases:" << one.line;
    }
  }
}

TEST_F(ParserTest, Grammar) {
  constexpr unsigned int untouched = 777;
  for (CaseS one : readCases("grammar.cases")) {
    std::string rule;
    if (one.infix[0] == '[') {
      std::size_t const close = one.infix.find("] ");
      rule = one.infix.substr(1, close - 1);
      one.infix.erase(0, close + 2);
    }
    unsigned int start = untouched;
    unsigned int end = untouched;
    ErrorCauseE cause = ERROR_CAUSE_PLACEHOLDER;
    wstring prefix = u"before ";
    std::string found;
    bool good = false;
    if (!rule.empty()) {
      LexicalAnalyserC lexer(one.text());
      good = detail::InfixParserC(lexer).read(ruleOf(rule), prefix, start, end, cause);
      if (good) {
        unsigned int rest = 0;
        unsigned int restEnd = 0;
        lexer.getCurrentTokenPosition(rest, restEnd);
        EXPECT_EQ(u"before ", prefix.substr(0, 7)) << "a rule appends";
        found = escaped(prefix.substr(7)) + " … " + std::to_string(rest);
      }
    } else {
      good = Node4C::convertInfixToPrefix(one.text(), prefix, start, end, cause);
      found = escaped(prefix);
    }
    if (good) {
      EXPECT_TRUE(start == untouched && end == untouched && cause == ERROR_CAUSE_PLACEHOLDER);
    } else {
      EXPECT_EQ(u"before ", prefix);
      found = "error " + std::to_string(cause) + " " + std::to_string(start) + "-" + std::to_string(end);
    }
    EXPECT_EQ(one.expected, found) << "grammar.cases:" << one.line;
  }
}

// Long and deep texts: each is read and read back by the expression library on a small stack, and its prefix
// text has exactly the length that the shape asks for.
TEST_F(ParserTest, LengthAndDepth) {
  struct LongS {
    wstring infix;
    unsigned long size;
  };
  constexpr unsigned long terms = 100000;
  constexpr unsigned long depth = 20000;
  std::vector<LongS> const texts{
      {u"a" + repeated(terms, u"+b"), 1 + terms * 5},
      {u"a" + repeated(depth, u" and b"), 1 + depth * 7},
      {u"a" + repeated(depth, u"<b"), 1 + depth * 5},
      {u"a" + repeated(depth, u"^b"), 1 + depth * 5},
      {u"a" + repeated(depth, u"!"), 1 + depth * 3},
      {repeated(depth, u"-") + u"a", 1 + depth * 6},
      {repeated(depth, u"+-") + u"2", 1 + depth * 12 - 5},
      {repeated(depth, u"not ") + u"a", 1 + depth * 5},
      {repeated(depth, u"(") + u"a" + repeated(depth, u")"), 1 + depth * 11},
      {repeated(depth, u"f(a,") + u"a" + repeated(depth, u")"), 1 + depth * 5},
      {repeated(depth, u"(a+sin(-") + u"a" + repeated(depth, u"))^b!"), 1 + depth * 35},
      {u"f(a" + repeated(depth, u",b") + u")", 4 + depth * 2},
      {repeated(terms, u"x.....") + u"+1", 6 * terms + 5},
  };
  tests::onSmallStack([&] {
    for (LongS const& one : texts) {
      wstring prefix;
      unsigned int start = 0;
      unsigned int end = 0;
      ErrorCauseE cause{};
      std::string const shape = utf8::utf16to8(one.infix.substr(0, 20));
      ASSERT_TRUE(Node4C::convertInfixToPrefix(one.infix, prefix, start, end, cause)) << shape;
      EXPECT_EQ(one.size, prefix.size()) << shape;
      EXPECT_TRUE(AlgebraicExpressionC::fromPrefixString(prefix)) << shape;
      // An error behind all of it is found where it is.
      EXPECT_FALSE(Node4C::convertInfixToPrefix(one.infix + u" )", prefix, start, end, cause));
      EXPECT_EQ(one.infix.size() + 1, start);
    }
  });
}

TEST_F(ParserTest, AnyTextIsReadOrRefusedInPlace) {
  static std::vector<wstring> const pieces{
      u"a",    u"x1",       u"r",   u"o",     u"2",    u"3.5",        u"1e",  u"E",    u".",
      u"(",    u")",        u"(",   u")",     u",",    u"+",          u"-",   u"−",    u"∙",
      u"^",    u"!",        u"=",   u"<>",    u"≤",    u">",          u":=",  u"»",    u":",
      u" ",    u" ",        u" or", u" and ", u"not ", u"mod ",       u"f(",  u"sin(", u"area(",
      u"unit", u"`+(a,2)`", u"ॠ",   u"/",     u"ä",    u"\U0001F600", u"`r`", u"\t",   wstring(1, u'\0')};
  std::mt19937 random(20240607);
  unsigned long numRead = 0;
  for (int round = 0; round < 60000; ++round) {
    wstring infix;
    // Operands and signs in turn now and then, so that not everything is refused.
    bool const alternate = round % 2 == 0;
    for (unsigned long n = random() % 12; n > 0; --n) {
      infix +=
          alternate ? pieces[n % 2 ? random() % 6 : 14 + random() % 19] : pieces[random() % pieces.size()];
    }
    wstring prefix = u"untouched";
    unsigned int start = 0;
    unsigned int end = 0;
    ErrorCauseE cause{};
    if (Node4C::convertInfixToPrefix(infix, prefix, start, end, cause)) {
      ++numRead;
      EXPECT_TRUE(AlgebraicExpressionC::fromPrefixString(prefix))
          << escaped(infix) << " gave " << escaped(prefix);
    } else {
      EXPECT_TRUE(start <= end && end <= infix.size()) << escaped(infix);
      EXPECT_EQ(start == end, start == infix.size()) << escaped(infix);
      EXPECT_EQ(u"untouched", prefix);
    }
  }
  EXPECT_GT(numRead, 5000u);
}

}  // namespace
}  // namespace zolt::math::ved
