#include "tests/engines/engine_cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::tests {

using namespace math::algexpr;

ExpressionT readExpression(std::string const& text) {
  return exchange::fromPlainText(toText(text), CASSessionBC::getSession());
}

std::string writeExpression(ExpressionT const& expression) {
  return toUtf8(exchange::toPlainText(*expression));
}

namespace {

/// "solve x", "num 30", "eval deg": an operation and what belongs to it.
CASRequestS readCommand(std::string const& command) {
  static std::vector<std::pair<std::string, CASOperationE>> const operations{
      {"eval", CAS_EVALUATE},      {"num", CAS_APPROXIMATE}, {"expand", CAS_EXPAND},
      {"simplify", CAS_SIMPLIFY},  {"factor", CAS_FACTOR},   {"solve", CAS_SOLVE},
      {"diff", CAS_DIFFERENTIATE}, {"int", CAS_INTEGRATE},   {"subst", CAS_SUBSTITUTE}};
  CASRequestS request;
  request.deadline = std::chrono::seconds(60);
  std::vector<std::string> const words = split(command, " ");
  for (auto const& [word, operation] : operations) {
    if (word == words[0]) request.operation = operation;
  }
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i] == "deg") {
      request.angle = CAS_DEGREES;
    } else if (words[i] == "rounded") {
      request.numbers = CAS_ROUNDED_NUMBERS;
    } else if (request.operation == CAS_APPROXIMATE) {
      request.digits = static_cast<unsigned>(std::stoul(words[i]));
    } else if (i == 1) {
      request.variable = toText(words[i]);
    } else {
      request.value = readExpression(words[i]);
    }
  }
  return request;
}

}  // namespace

std::string describeResult(CASResultS const& result, CASRequestS const& request) {
  if (result.outcome == CAS_VALUE) {
    bool const isRounded = result.certainDigits != CASResultS::all_digits;
    return writeExpression(result.value) + (isRounded ? " ±" + std::to_string(result.certainDigits) : "");
  }
  std::string text = (result.outcome == CAS_ERROR ? "! " : "? ") + toUtf8(describe(result));
  if (PointerTC<NodeABC> const part = findPart(*request.expression, result.part)) {
    text += " @ " + writeExpression(new AlgebraicExpressionC(part, nullptr));
  }
  return text;
}

namespace {

std::string withoutBrackets(ExpressionT const& expression) {
  std::string text = toUtf8(expression->toPrefixString());
  std::string const brackets = "_quietpos(";
  for (std::size_t at; (at = text.find(brackets)) != text.npos;) {
    std::size_t end = at + brackets.size();
    for (int depth = 1; depth > 0; ++end) depth += text[end] == '(' ? 1 : text[end] == ')' ? -1 : 0;
    text.erase(end - 1, 1).erase(at, brackets.size());
  }
  return text;
}

// What a person sees of a result is read back as the same expression, but for brackets that change nothing.
void expectToBeShownAsItIs(ExpressionT const& result) {
  std::unique_ptr<math::ved::Node4C> const tree(
      math::ved::Node4C::fromAlgebraicExpression(result, 0, NUMBER_FORMAT_AUTOMATIC));
  ExpressionT const shown = tree->getAlgebraicExpression(nullptr);
  ASSERT_TRUE(shown);
  EXPECT_EQ(withoutBrackets(shown), withoutBrackets(result));
}

// An exact value is the numeric one: their difference is 0 as far as digits are certain.
void expectSameNumber(CASEngineABC const& engine, CASRequestS request, ExpressionT const& exact) {
  request.operation = CAS_APPROXIMATE;
  CASResultS const direct = engine.compute(request);
  if (direct.outcome != CAS_VALUE || direct.certainDigits == 0) return;
  request.expression = exact;
  CASResultS const fromExact = engine.compute(request);
  ASSERT_EQ(fromExact.outcome, CAS_VALUE);
  request.digits = std::min({14U, direct.certainDigits, fromExact.certainDigits}) - 1;
  request.expression = direct.value;
  std::string const rounded = writeExpression(engine.compute(request).value);
  request.expression = fromExact.value;
  EXPECT_EQ(rounded, writeExpression(engine.compute(request).value));
}

}  // namespace

void expectAnswers(PointerTC<CASEngineABC> const& engine, std::string const& path) {
  for (CaseS const& line : readCases(path)) {
    SCOPED_TRACE(line.where + ": " + line.input);
    std::size_t const colon = line.input.find(": ");
    ASSERT_NE(colon, line.input.npos);
    CASSessionBC session(engine);
    CASResultS result;
    CASRequestS request = readCommand(line.input.substr(0, colon));
    for (std::string const& text : split(line.input.substr(colon + 2), "; ")) {
      request.expression = readExpression(text);
      ASSERT_TRUE(request.expression) << text;
      request.definitions = session.getDefinitions();
      result = session.compute(request);
    }
    EXPECT_EQ(describeResult(result, request), line.expected);
    if (result.outcome != CAS_VALUE) continue;
    if (request.operation != CAS_APPROXIMATE) expectToBeShownAsItIs(result.value);
    if (request.operation == CAS_EVALUATE) expectSameNumber(*engine, request, result.value);
  }
}

}  // namespace zolt::tests
