#include <gtest/gtest.h>

#include <string>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/parser/lexical_analyser.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

TEST(Parser, Grammar) {
  standardOperators();
  constexpr unsigned int untouched = 777;
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/grammar.cases")) {
    unsigned int start = untouched;
    unsigned int end = untouched;
    ErrorCauseE cause = ERROR_CAUSE_PLACEHOLDER;
    oss::wstring prefix = u"before";
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

// The places of tokens; their kinds show in what the grammar makes of them.
TEST(Parser, TokensHaveTheirPlaces) {
  standardOperators();
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/lexer.cases")) {
    oss::wstring const text = toText(one.input);
    LexicalAnalyserC lexer(text);
    std::string tokens;
    for (; lexer.getCurrentTokenType() != TOKEN_END; lexer.readNextToken()) {
      unsigned int start = 0;
      unsigned int end = 0;
      lexer.getCurrentTokenPosition(start, end);
      tokens += (tokens.empty() ? "" : " ") + std::to_string(start) + "-" + std::to_string(end);
      EXPECT_EQ(lexer.getCurrentTokenType() == TOKEN_OPERATOR_WORD, bool(lexer.getCurrentTokenOperator()));
    }
    EXPECT_EQ(one.expected, tokens) << one.where;
  }
}

}  // namespace
}  // namespace zolt::tests
