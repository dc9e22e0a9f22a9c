// One run that shows how each stage grows: time per leaf at 1,000, 10,000 and 100,000 leaves, the ratio of
// the last to the first, the speed of the whole trip and the heap that a tree and its expression take. Only
// ratios within one run compare; the best of several rounds is taken because other work on the machine can
// only make a round slower.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>

#include "bench/allocations.h"
#include "bench/expressions.h"
#include "bench/stages.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace {

using namespace zolt::bench;
using zolt::surfaces::RecordingGraphicsC;

constexpr long sizes[] = {1000, 10000, 100000};

/// Seconds that one call takes, the best of several rounds of about equal work.
double bestTime(long leaves, std::function<void()> const& call) {
  long const repeat = std::max(1L, sizes[2] / leaves);
  double best = std::numeric_limits<double>::max();
  for (int round = 0; round < 7; ++round) {
    auto const start = std::chrono::steady_clock::now();
    for (long i = 0; i < repeat; ++i) call();
    std::chrono::duration<double> const taken = std::chrono::steady_clock::now() - start;
    best = std::min(best, taken.count() / static_cast<double>(repeat));
  }
  return best;
}

struct SubjectS {
  SubjectS(ShapeE shape, long size) : leaves(size), prefix(makePrefix(shape, size)) {
    long const before = heapBytesInUse();
    expression = readPrefix(prefix);
    tree = buildTree(expression);
    bytes = heapBytesInUse() - before;
    nodes = countNodes(*tree);
    layOut(*tree, surface);
  }

  long leaves;
  zolt::oss::wstring prefix;
  ExpressionT expression;
  TreeT tree;
  long bytes = 0;
  long nodes = 0;
  RecordingGraphicsC surface{RecordingGraphicsC::LOG_NOTHING};
};

using StageT = std::function<void(SubjectS&)>;

void wholeTrip(SubjectS& subject) {
  auto const tree = buildTree(readPrefix(subject.prefix));
  layOut(*tree, subject.surface);
  draw(*tree, subject.surface);
  writeExpression(*tree)->toPrefixString();
}

void printShape(ShapeE shape) {
  SubjectS subjects[] = {{shape, sizes[0]}, {shape, sizes[1]}, {shape, sizes[2]}};
  std::pair<char const*, StageT> const stages[] = {
      {"read", [](SubjectS& s) { readPrefix(s.prefix); }},
      {"build", [](SubjectS& s) { buildTree(s.expression); }},
      {"layout", [](SubjectS& s) { layOut(*s.tree, s.surface); }},
      {"draw", [](SubjectS& s) { draw(*s.tree, s.surface); }},
      {"write", [](SubjectS& s) { writeExpression(*s.tree)->toPrefixString(); }},
      {"whole trip", wholeTrip},
  };
  for (auto const& [name, stage] : stages) {
    double perLeaf[3] = {};
    for (int i = 0; i < 3; ++i) {
      SubjectS& subject = subjects[i];
      perLeaf[i] = bestTime(subject.leaves, [&, run = stage] { run(subject); }) * 1e9 /
                   static_cast<double>(subject.leaves);
    }
    std::printf("%-11s %-11s %9.0f %9.0f %9.0f   %5.2f", nameOf(shape), name, perLeaf[0], perLeaf[1],
                perLeaf[2], perLeaf[2] / perLeaf[0]);
    if (name == stages[5].first) {
      double const nodesPerLeaf =
          static_cast<double>(subjects[2].nodes) / static_cast<double>(subjects[2].leaves);
      std::printf("   %.0f nodes/s at 1,000 and %.0f at 100,000 leaves", nodesPerLeaf * 1e9 / perLeaf[0],
                  nodesPerLeaf * 1e9 / perLeaf[2]);
    }
    std::printf("\n");
  }
  for (SubjectS const& subject : subjects) {
    std::printf("%-11s heap: %ld leaves, %ld nodes, %ld bytes, %ld a node, %ld a leaf\n", nameOf(shape),
                subject.leaves, subject.nodes, subject.bytes, subject.bytes / subject.nodes,
                subject.bytes / subject.leaves);
  }
}

}  // namespace

int main() {
  registerOperators();
  std::printf("%-11s %-11s %9s %9s %9s   %s\n", "shape", "stage", "1,000", "10,000", "100,000", "growth");
  std::printf("%-11s %-11s %30s\n", "", "", "nanoseconds a leaf");
  for (ShapeE shape : {ShapeE::flat_sum, ShapeE::constructs, ShapeE::mix}) printShape(shape);
  return 0;
}
