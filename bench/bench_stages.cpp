// Measures each stage of an expression's way through the component, by shape and size.

#include <benchmark/benchmark.h>

#include "bench/expressions.h"
#include "bench/stages.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace {

using namespace zolt::bench;
using zolt::surfaces::RecordingGraphicsC;

struct SubjectS {
  explicit SubjectS(benchmark::State const& state)
      : prefix(makePrefix(static_cast<ShapeE>(state.range(0)), state.range(1))),
        expression(readPrefix(prefix)),
        tree(buildTree(expression)),
        nodes(countNodes(*tree)) {
    layOut(*tree, surface);
  }

  zolt::oss::wstring prefix;
  ExpressionT expression;
  TreeT tree;
  long nodes;
  RecordingGraphicsC surface{RecordingGraphicsC::LOG_NOTHING};
};

void report(benchmark::State& state, SubjectS const& subject) {
  auto const iterations = static_cast<double>(state.iterations());
  state.SetLabel(nameOf(static_cast<ShapeE>(state.range(0))));
  state.counters["leaves/s"] =
      benchmark::Counter(iterations * static_cast<double>(state.range(1)), benchmark::Counter::kIsRate);
  state.counters["nodes/s"] =
      benchmark::Counter(iterations * static_cast<double>(subject.nodes), benchmark::Counter::kIsRate);
}

void read(benchmark::State& state) {
  SubjectS const subject(state);
  for (auto _ : state) benchmark::DoNotOptimize(readPrefix(subject.prefix));
  report(state, subject);
}

void build(benchmark::State& state) {
  SubjectS const subject(state);
  for (auto _ : state) benchmark::DoNotOptimize(buildTree(subject.expression));
  report(state, subject);
}

void layout(benchmark::State& state) {
  SubjectS const subject(state);
  for (auto _ : state) layOut(*subject.tree, subject.surface);
  report(state, subject);
}

void drawing(benchmark::State& state) {
  SubjectS const subject(state);
  for (auto _ : state) draw(*subject.tree, subject.surface);
  report(state, subject);
}

void write(benchmark::State& state) {
  SubjectS const subject(state);
  for (auto _ : state) benchmark::DoNotOptimize(writeExpression(*subject.tree)->toPrefixString());
  report(state, subject);
}

void wholeTrip(benchmark::State& state) {
  SubjectS const subject(state);
  for (auto _ : state) {
    auto const tree = buildTree(readPrefix(subject.prefix));
    layOut(*tree, subject.surface);
    draw(*tree, subject.surface);
    benchmark::DoNotOptimize(writeExpression(*tree)->toPrefixString());
  }
  report(state, subject);
}

void sizes(benchmark::internal::Benchmark* bench) {
  for (int shape = 0; shape < 3; ++shape) {
    for (long leaves : {10, 1000, 10000, 100000}) bench->Args({shape, leaves});
  }
  bench->Unit(benchmark::kMicrosecond);
}

BENCHMARK(read)->Apply(sizes);
BENCHMARK(build)->Apply(sizes);
BENCHMARK(layout)->Apply(sizes);
BENCHMARK(drawing)->Apply(sizes);
BENCHMARK(write)->Apply(sizes);
BENCHMARK(wholeTrip)->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
  registerOperators();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
