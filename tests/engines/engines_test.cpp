#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/engines/basic/basic_engine.h"
#ifndef __EMSCRIPTEN__
#include "zolt/engines/queue/engine_queue.h"
#endif
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::engine_basic {
namespace {

using namespace math::algexpr;
using ExpressionT = PointerTC<AlgebraicExpressionC>;

ExpressionT read(std::string const& text) {
  return exchange::fromPlainText(tests::toText(text), CASSessionBC::getSession());
}

std::string write(ExpressionT const& expression) { return tests::toUtf8(exchange::toPlainText(*expression)); }

std::vector<std::string> split(std::string const& text, std::string const& at) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t end; (end = text.find(at, begin)) != text.npos; begin = end + at.size()) {
    parts.push_back(text.substr(begin, end - begin));
  }
  parts.push_back(text.substr(begin));
  return parts;
}

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
    } else if (request.operation == CAS_APPROXIMATE) {
      request.digits = static_cast<unsigned>(std::stoul(words[i]));
    } else if (i == 1) {
      request.variable = tests::toText(words[i]);
    } else {
      request.value = read(words[i]);
    }
  }
  return request;
}

std::string describeResult(CASResultS const& result, CASRequestS const& request) {
  if (result.outcome == CAS_VALUE) {
    bool const isRounded = result.certainDigits != CASResultS::all_digits;
    return write(result.value) + (isRounded ? " ±" + std::to_string(result.certainDigits) : "");
  }
  std::string text = (result.outcome == CAS_ERROR ? "! " : "? ") + tests::toUtf8(describe(result));
  if (PointerTC<NodeABC> const part = findPart(*request.expression, result.part)) {
    text += " @ " + write(new AlgebraicExpressionC(part, nullptr));
  }
  return text;
}

std::string withoutBrackets(ExpressionT const& expression) {
  std::string text = tests::toUtf8(expression->toPrefixString());
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
void expectSameNumber(BasicEngineC const& engine, CASRequestS request, ExpressionT const& exact) {
  request.operation = CAS_APPROXIMATE;
  CASResultS const direct = engine.compute(request);
  if (direct.outcome != CAS_VALUE || direct.certainDigits == 0) return;
  request.expression = exact;
  CASResultS const fromExact = engine.compute(request);
  ASSERT_EQ(fromExact.outcome, CAS_VALUE);
  request.digits = std::min({14U, direct.certainDigits, fromExact.certainDigits}) - 1;
  request.expression = direct.value;
  std::string const rounded = write(engine.compute(request).value);
  request.expression = fromExact.value;
  EXPECT_EQ(rounded, write(engine.compute(request).value));
}

TEST(BasicEngine, AnswersTheCases) {
  tests::standardOperators();
  BasicEngineC const engine;
  for (tests::CaseS const& line : tests::readCases(ZOLT_TEST_DATA "/basic.cases")) {
    SCOPED_TRACE(line.where + ": " + line.input);
    std::size_t const colon = line.input.find(": ");
    ASSERT_NE(colon, line.input.npos);
    CASSessionBC session(new BasicEngineC);
    CASResultS result;
    CASRequestS request = readCommand(line.input.substr(0, colon));
    for (std::string const& text : split(line.input.substr(colon + 2), "; ")) {
      request.expression = read(text);
      ASSERT_TRUE(request.expression) << text;
      request.definitions = session.getDefinitions();
      result = session.compute(request);
    }
    EXPECT_EQ(describeResult(result, request), line.expected);
    if (result.outcome != CAS_VALUE) continue;
    if (request.operation != CAS_APPROXIMATE) expectToBeShownAsItIs(result.value);
    if (request.operation == CAS_EVALUATE) expectSameNumber(engine, request, result.value);
  }
}

// Neither depth nor length of an expression costs more than in proportion.
TEST(BasicEngine, ComputesWhatIsDeepAndLong) {
  BasicEngineC const engine;
  CASRequestS request;
  request.deadline = std::chrono::seconds(60);
  auto const compute = [&](CASOperationE operation, wstring const& prefix) {
    request.operation = operation;
    request.expression = AlgebraicExpressionC::fromPrefixString(prefix);
    CASResultS const result = engine.compute(request);
    return result.value ? write(result.value) : describeResult(result, request);
  };
  unsigned long const depth = 100000;
  for (CASOperationE const operation : {CAS_EVALUATE, CAS_APPROXIMATE}) {
    EXPECT_EQ(compute(operation, tests::nest(depth, u"+(", u"1", u",1)")), "100001");
    EXPECT_EQ(compute(operation, tests::nest(depth, u"+(1,", u"1", u")")), "100001");
    EXPECT_EQ(compute(operation, tests::nest(depth, u"_neg(", u"2", u")")), "2");
    EXPECT_EQ(compute(operation, tests::nest(depth, u"abs(_neg(", u"3", u"))")), "3");
    EXPECT_EQ(compute(operation, tests::nest(depth, u"where(", u"x", u",x,1)")), "1");
  }
  EXPECT_EQ(compute(CAS_EVALUATE, tests::nest(depth, u"+(", u"x", u",x)")), "100001*x");
  EXPECT_EQ(compute(CAS_EVALUATE, tests::nest(1000, u"sin(", u"x", u")")).size(), 5001U);
  wstring const digits(100000, u'7');
  EXPECT_EQ(compute(CAS_EVALUATE, u"mod(*(" + digits + u"," + digits + u"),1000)"), "729");
}

// Whatever runs away ends, at the deadline or when it is stopped, and the next answer is right.
TEST(BasicEngine, EndsInTime) {
  BasicEngineC const engine;
  CASRequestS request;
  for (char const* const text :
       {"sum(k,1,10^9,1/k)", "sum(k,1,10^12,sin(k))", "int(0,1,int(0,1,int(0,1,sin(1/(x*y*z)),x),y),z)"}) {
    for (CASOperationE const operation : {CAS_EVALUATE, CAS_APPROXIMATE}) {
      request.operation = operation;
      request.expression = read(text);
      request.deadline = std::chrono::milliseconds(50);
      CASResultS const late = engine.compute(request);
      bool const isLate = late.cause == CAS_CAUSE_DEADLINE || late.cause == CAS_CAUSE_NEEDS_ALGEBRA;
      EXPECT_TRUE(isLate) << describeResult(late, request);
      PointerTC<CASStopC> const stop(new CASStopC);
      stop->stop();
      EXPECT_EQ(engine.compute(request, stop.get()).cause, CAS_CAUSE_STOPPED);
    }
  }
  request.expression = read("(x+y+z+1)^100");
  request.operation = CAS_EXPAND;
  EXPECT_EQ(engine.compute(request).outcome, CAS_UNEVALUATED);
  request.expression = read("1+1");
  request.operation = CAS_EVALUATE;
  EXPECT_EQ(describeResult(engine.compute(request), request), "2");
}

#ifndef __EMSCRIPTEN__
// Results come on the thread that polls, in their order; what is cancelled does not come, and holds nobody
// up.
TEST(EngineQueue, DeliversWhenPolled) {
  std::atomic<int> woken{0};
  engine_queue::EngineQueueC queue(new BasicEngineC, [&] { ++woken; });
  CASRequestS request;
  request.deadline = std::chrono::seconds(600);
  std::string told;
  auto const submit = [&](char const* text) {
    request.expression = read(text);
    return queue.submit(request, [&, text](CASResultS const& result) {
      told += std::string(text) + "=" + (result.value ? write(result.value) : "?") + " ";
    });
  };
  auto const endless = submit("sum(k,1,10^15,sin(k)^2)");
  submit("1+1");
  auto const unwanted = submit("2+2");
  submit("3+3");
  EXPECT_EQ(queue.poll(), 4U);
  queue.cancel(unwanted);
  queue.cancel(endless);
  while (queue.poll() > 0) std::this_thread::yield();
  EXPECT_EQ(told, "1+1=2 3+3=6 ");
  EXPECT_GE(woken, 2);
  submit("sum(k,1,10^15,sin(k)^2)");
}
#endif

}  // namespace
}  // namespace zolt::engine_basic
