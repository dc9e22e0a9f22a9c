#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "tests/engines/engine_cases.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/engines/basic/basic_engine.h"
#ifndef __EMSCRIPTEN__
#include "zolt/engines/queue/engine_queue.h"
#endif

namespace zolt::engine_basic {
namespace {

using namespace math::algexpr;
using tests::describeResult;
constexpr auto read = tests::readExpression;
constexpr auto write = tests::writeExpression;

TEST(BasicEngine, AnswersTheCases) {
  tests::standardOperators();
  tests::expectAnswers(new BasicEngineC, ZOLT_TEST_DATA "/basic.cases");
  catalogue_extended::registerExtendedOperators(tests::standardOperators());
  tests::expectAnswers(new BasicEngineC, ZOLT_TEST_DATA "/extended.cases");
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
       {"sum(k,1,10^9,1/k)", "sum(k,1,10^12,sin(k))", "int(0,1,int(0,1,int(0,1,sin(1/(x*y*z)),x),y),z)",
        "sqrt(10^200000+1)", "(2/3)^500000+(3/7)^300000", "nthroot(2^900000+1,3)"}) {
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

  engine_queue::EngineQueueC silent(new BasicEngineC);
  request.expression = read("1+1");
  silent.submit(request, [&](CASResultS const& result) { told = write(result.value); });
  while (silent.poll() > 0) std::this_thread::yield();
  EXPECT_EQ(told, "2") << "nobody is woken";
}
#endif

}  // namespace
}  // namespace zolt::engine_basic
