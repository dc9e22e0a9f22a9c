#include <gtest/gtest.h>

#include <string>

#include "tests/support/cases.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/operators/operator_binary_infix.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/operators/operator_unary_prefix.h"
#include "zolt/ved/parser/lexical_analyser.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

using tests::CaseS;
using tests::readCases;
using tests::toText;
using tests::toUtf8;

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
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/lexer.cases")) {
    wstring const text = toText(one.input);
    LexicalAnalyserC lexer(text);
    std::string tokens;
    unsigned int start = 0;
    unsigned int end = 0;
    while (lexer.getCurrentTokenType() != TOKEN_END) {
      if (!tokens.empty()) tokens += ", ";
      tokens += kinds[lexer.getCurrentTokenType()];
      wstring const token = lexer.getCurrentToken();
      tokens += token.empty() ? " " : "(" + toUtf8(token) + ")";
      lexer.getCurrentTokenPosition(start, end);
      tokens += std::to_string(start) + "-" + std::to_string(end);
      EXPECT_EQ(lexer.getCurrentTokenType() == TOKEN_OPERATOR_WORD, bool(lexer.getCurrentTokenOperator()));
      lexer.readNextToken();
    }
    EXPECT_EQ(toUtf8(toText(one.expected)), tokens) << one.where;
    for (int again = 0; again < 2; ++again) {
      lexer.readNextToken();
      lexer.getCurrentTokenPosition(start, end);
      EXPECT_EQ(TOKEN_END, lexer.getCurrentTokenType());
      EXPECT_TRUE(lexer.getCurrentToken().empty());
      EXPECT_TRUE(start == text.size() && end == text.size()) << one.where;
    }
  }
}

TEST_F(ParserTest, Grammar) {
  constexpr unsigned int untouched = 777;
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/grammar.cases")) {
    unsigned int start = untouched;
    unsigned int end = untouched;
    ErrorCauseE cause = ERROR_CAUSE_PLACEHOLDER;
    wstring prefix = u"before";
    if (Node4C::convertInfixToPrefix(toText(one.input), prefix, start, end, cause)) {
      EXPECT_EQ(one.expected, toUtf8(prefix)) << one.where;
      EXPECT_TRUE(start == untouched && end == untouched && cause == ERROR_CAUSE_PLACEHOLDER);
    } else {
      std::string const error =
          "error " + std::to_string(cause) + " " + std::to_string(start) + "-" + std::to_string(end);
      EXPECT_EQ(one.expected, error) << one.where;
      EXPECT_EQ(u"before", prefix);
    }
  }
}

}  // namespace
}  // namespace zolt::math::ved
