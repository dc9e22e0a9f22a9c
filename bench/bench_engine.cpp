#include <benchmark/benchmark.h>

#include <string>

#include "zolt/algexpr/cas_request.h"
#include "zolt/engines/basic/basic_engine.h"

// How many nodes of the catalogue the embedded engine evaluates in a second, numerically and exactly.

namespace {

using namespace zolt;
using namespace zolt::math::algexpr;

/// A sum of terms with every kind of operation, `count` times 26 nodes.
PointerTC<AlgebraicExpressionC> makeExpression(std::int64_t count) {
  oss::wstring prefix = u"0";
  for (std::int64_t i = 0; i < count; ++i) {
    std::string const digits = std::to_string(i % 97 + 2);
    oss::wstring const n(digits.begin(), digits.end());
    prefix = u"+(" + prefix + u",-(*(sin(/(" + n + u",7)),sqrt(+(" + n + u",0.5))),/(^(" + n +
             u",2),+(abs(cos(" + n + u")),exp(/(_PI," + n + u"))))))";
  }
  return AlgebraicExpressionC::fromPrefixString(prefix);
}

unsigned long countNodes(AlgebraicExpressionC const& expression) {
  unsigned long nodes = 0;
  for (char16_t const c : expression.toPrefixString()) nodes += c == u',' || c == u'(' ? 1 : 0;
  return nodes + 1;
}

void evaluate(benchmark::State& state, CASOperationE operation) {
  engine_basic::BasicEngineC const engine;
  CASRequestS request;
  request.operation = operation;
  request.expression = makeExpression(state.range(0));
  request.deadline = std::chrono::seconds(600);
  for (auto _ : state) benchmark::DoNotOptimize(engine.compute(request));
  auto const nodes = static_cast<std::int64_t>(countNodes(*request.expression));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * nodes);
}

}  // namespace

BENCHMARK_CAPTURE(evaluate, numeric, CAS_APPROXIMATE)->Arg(10)->Arg(1000);
BENCHMARK_CAPTURE(evaluate, exact, CAS_EVALUATE)->Arg(10)->Arg(1000);

BENCHMARK_MAIN();
