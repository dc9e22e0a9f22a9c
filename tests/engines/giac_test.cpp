#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <thread>
#include <vector>

#include "tests/engines/engine_cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/engines/giac/giac_engine.h"

namespace zolt::engine_giac {
namespace {

using namespace math::algexpr;
using tests::describeResult;
using tests::readExpression;

CASRequestS ask(std::string const& text, CASOperationE operation = CAS_EVALUATE) {
  CASRequestS request;
  request.expression = readExpression(text);
  request.operation = operation;
  request.deadline = std::chrono::seconds(60);
  return request;
}

std::string answer(CASEngineABC const& engine, std::string const& text) {
  CASRequestS const request = ask(text);
  return describeResult(engine.compute(request), request);
}

auto countFiles() {
  std::filesystem::directory_iterator const files("/proc/self/fd");
  return std::distance(begin(files), end(files));
}

// Whatever a worker does, there is an answer, the next one is right, and nothing is left behind.
TEST(GiacEngine, OutlivesItsWorkers) {
  auto const files = countFiles();
  {
    GiacEngineC const engine(ZOLT_TEST_DATA "/fake_worker.py");
    EXPECT_EQ(answer(engine, "fine"), "fine");
    for (char const* const fault : {"crash", "garbage", "half", "gigabyte", "early"}) {
      EXPECT_EQ(answer(engine, fault), std::string("? The algebra system does not answer @ ") + fault);
      EXPECT_EQ(answer(engine, "fine"), "fine");
    }
    CASRequestS late = ask("hang");
    late.deadline = std::chrono::milliseconds(30);
    EXPECT_EQ(engine.compute(late).cause, CAS_CAUSE_DEADLINE);
    PointerTC<CASStopC> const stop(new CASStopC);
    std::thread stopping([&] { stop->stop(); });
    EXPECT_EQ(engine.compute(ask("hang"), stop.get()).cause, CAS_CAUSE_STOPPED);
    stopping.join();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] { EXPECT_EQ(answer(engine, "fine"), "fine"); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(answer(engine, "leak"), "0");
    std::string deep = "x";
    for (int i = 0; i < 1100; ++i) deep = "sin(" + deep + ")";
    EXPECT_EQ(engine.compute(ask(deep)).cause, CAS_CAUSE_TOO_LARGE);
  }
  EXPECT_EQ(countFiles(), files);
  EXPECT_EQ(waitpid(-1, nullptr, 0), -1) << "a process is left";
  EXPECT_EQ(answer(GiacEngineC("/nowhere"), "fine"), "? The algebra system does not answer @ fine");
}

class RealWorker : public testing::Test {
 protected:
  void SetUp() override {
    if (GiacEngineC::findWorker().empty()) {
      ASSERT_FALSE(ZOLT_TEST_WORKER_IS_BUILT) << "the worker was built and is not found";
      GTEST_SKIP() << "there is no worker";
    }
    catalogue_extended::registerExtendedOperators(tests::standardOperators());
  }
};

TEST_F(RealWorker, AnswersTheCases) { tests::expectAnswers(new GiacEngineC, ZOLT_TEST_DATA "/giac.cases"); }

// Wherever both engines have a number it is the same one.
TEST_F(RealWorker, AgreesWithTheEmbeddedEngine) {
  GiacEngineC const giac;
  engine_basic::BasicEngineC const basic;
  unsigned seed = 1, compared = 0;
  auto const pick = [&](unsigned count) { return (seed = seed * 1103515245 + 12345) / 65536 % count; };
  std::function<std::string(unsigned)> const make = [&](unsigned depth) -> std::string {
    static char const* const leaves[] = {"2", "3", "5", "0.5", "7/3", "pi", "1/6", "(-4)"};
    static char const* const calls[] = {"sqrt", "abs",  "floor", "ceil",   "ln",     "exp",
                                        "sin",  "cos",  "tan",   "arcsin", "arccos", "arctan",
                                        "sinh", "cosh", "tanh",  "log",    "-"};
    static char const* const constructs[] = {
        "sum(k,1,3,k*$)",   "prod(k,1,3,k+$)",    "int(0,2,x*$,x)",           "det($,2;3,$)", "binom(6,2)*$",
        "where(x^2*$,x,$)", "cases($,$<$;$,1<2)", "det([$,1;2,$]*[1,2;3,$])", "$%+log(3,$)"};
    static char const* const signs[] = {"+", "-", "*", "/", " div ", " mod "};
    if (depth == 0) return leaves[pick(8)];
    unsigned const kind = pick(8);
    std::string const a = "(" + make(depth - 1) + ")";
    if (kind < 3) return calls[pick(17)] + a;
    if (kind == 3) return a + "^" + (pick(2) ? "2" : "(1/2)");
    if (kind == 4) return "nthroot(" + a + ",3)";
    if (kind == 5) {
      std::string text = constructs[pick(9)];
      for (std::size_t at = 0; (at = text.find('$', at)) != text.npos;) {
        std::string const part = "(" + make(depth - 1) + ")";
        text.replace(at, 1, part);
        at += part.size();
      }
      return text;
    }
    return a + signs[pick(6)] + "(" + make(depth - 1) + ")";
  };
  for (unsigned i = 0; i < 600; ++i) {
    std::string const text = make(1 + pick(3));
    SCOPED_TRACE(text);
    CASRequestS request = ask(text, CAS_APPROXIMATE);
    CASResultS const one = basic.compute(request);
    CASResultS const other = giac.compute(request);
    if (one.outcome != CAS_VALUE || other.outcome != CAS_VALUE) continue;
    ++compared;
    std::string const a = tests::writeExpression(one.value), b = tests::writeExpression(other.value);
    unsigned const digits = std::min({15U, one.certainDigits, other.certainDigits});
    std::string const limit = "abs(" + b + ")*10^(" + std::to_string(1 - static_cast<int>(digits)) + ")";
    EXPECT_EQ(answer(basic, "abs(" + a + "-(" + b + "))<=" + limit), "true") << a << " " << b;
  }
  EXPECT_GT(compared, 200U);
}

// What runs away ends at the deadline, and the next answer is right.
TEST_F(RealWorker, EndsInTime) {
  GiacEngineC const engine;
  std::pair<char const*, CASOperationE> const endless[] = {
      {"(10^45+9)*(10^44+7)+10^60+1", CAS_FACTOR}, {"(x+y+z+1)^200", CAS_EXPAND}, {"(10^7)!", CAS_EVALUATE}};
  for (auto const& [text, operation] : endless) {
    CASRequestS request = ask(text, operation);
    request.deadline = std::chrono::milliseconds(100);
    EXPECT_EQ(engine.compute(request).outcome, CAS_UNEVALUATED) << text;
    EXPECT_EQ(answer(engine, "1+1"), "2");
  }
}

}  // namespace
}  // namespace zolt::engine_giac
