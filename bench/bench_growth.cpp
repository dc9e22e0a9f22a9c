// One run that shows how each stage grows: processor time per leaf for formulas of 1,000, 10,000 and 100,000
// leaves, the ratio of the last to the first, the speed of the whole trip and the heap that a tree and its
// expression take.
//
// Every round works through 100,000 leaves, as 100 formulas of 1,000, ten of 10,000 or one of 100,000, so
// that all sizes meet the same caches and only the growth of the work itself shows. Compare only ratios
// within one run; the best of several rounds is taken because other work on the machine can only make a round
// slower. The last column is the time per leaf of one formula of 1,000 leaves that stays in the cache.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "bench/allocations.h"
#include "bench/expressions.h"
#include "bench/stages.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace {

using namespace zolt::bench;
using zolt::surfaces::RecordingGraphicsC;

constexpr long sizes[] = {1000, 10000, 100000};

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

/// The results of a stage, kept until the round ends, so that every round fills the same amount of memory.
struct ProductS {
  ExpressionT read;
  TreeT tree;
  ExpressionT written;
  zolt::oss::wstring prefix;
};

using StageT = ProductS (*)(SubjectS&);

ProductS read(SubjectS& subject) { return {readPrefix(subject.prefix), nullptr, nullptr, {}}; }

ProductS build(SubjectS& subject) { return {nullptr, buildTree(subject.expression), nullptr, {}}; }

ProductS layout(SubjectS& subject) {
  layOut(*subject.tree, subject.surface);
  return {};
}

ProductS drawing(SubjectS& subject) {
  draw(*subject.tree, subject.surface);
  return {};
}

ProductS write(SubjectS& subject) {
  ProductS product{nullptr, nullptr, writeExpression(*subject.tree), {}};
  product.prefix = product.written->toPrefixString();
  return product;
}

ProductS wholeTrip(SubjectS& subject) {
  ProductS product;
  product.read = readPrefix(subject.prefix);
  product.tree = buildTree(product.read);
  layOut(*product.tree, subject.surface);
  draw(*product.tree, subject.surface);
  product.written = writeExpression(*product.tree);
  product.prefix = product.written->toPrefixString();
  return product;
}

constexpr std::pair<char const*, StageT> stages[] = {{"read", read},     {"build", build},
                                                     {"layout", layout}, {"draw", drawing},
                                                     {"write", write},   {"whole trip", wholeTrip}};

/// Nanoseconds of processor time per leaf, the best of several rounds over all the formulas.
double bestTime(std::vector<std::unique_ptr<SubjectS>> const& subjects, StageT const& stage) {
  double best = std::numeric_limits<double>::max();
  for (int round = 0; round < 7; ++round) {
    std::clock_t const start = std::clock();
    {
      std::vector<ProductS> products;
      for (auto const& subject : subjects) products.push_back(stage(*subject));
    }
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best * 1e9 / static_cast<double>(static_cast<long>(subjects.size()) * subjects.front()->leaves);
}

/// The same for one formula again and again.
double bestCachedTime(SubjectS& subject, StageT const& stage) {
  double best = std::numeric_limits<double>::max();
  for (int round = 0; round < 7; ++round) {
    std::clock_t const start = std::clock();
    for (int i = 0; i < 20; ++i) stage(subject);
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best * 1e9 / static_cast<double>(20 * subject.leaves);
}

std::vector<std::unique_ptr<SubjectS>> makeSubjects(ShapeE shape, long leaves) {
  std::vector<std::unique_ptr<SubjectS>> subjects;
  for (long i = 0; i < sizes[2] / leaves; ++i) subjects.push_back(std::make_unique<SubjectS>(shape, leaves));
  return subjects;
}

void printShape(ShapeE shape) {
  double perLeaf[6][4] = {};
  double nodesPerLeaf = 0;
  for (int size = 0; size < 3; ++size) {
    auto const subjects = makeSubjects(shape, sizes[size]);
    for (int i = 0; i < 6; ++i) perLeaf[i][size] = bestTime(subjects, stages[i].second);
    if (size == 0) {
      for (int i = 0; i < 6; ++i) perLeaf[i][3] = bestCachedTime(*subjects[0], stages[i].second);
    }
    SubjectS const& subject = *subjects.back();
    nodesPerLeaf = static_cast<double>(subject.nodes) / static_cast<double>(subject.leaves);
    std::printf("%-11s %7ld leaves, %6ld nodes: %4ld bytes of heap a node, %4ld a leaf\n", nameOf(shape),
                subject.leaves, subject.nodes, subject.bytes / subject.nodes, subject.bytes / subject.leaves);
  }
  for (int i = 0; i < 6; ++i) {
    double const* const t = perLeaf[i];
    std::printf("%-11s %-11s %9.0f %9.0f %9.0f %8.2f %9.0f\n", nameOf(shape), stages[i].first, t[0], t[1],
                t[2], t[2] / t[0], t[3]);
  }
  std::printf("%-11s whole trip: %.0f nodes/s at 1,000 leaves, %.0f at 100,000\n\n", nameOf(shape),
              nodesPerLeaf * 1e9 / perLeaf[5][0], nodesPerLeaf * 1e9 / perLeaf[5][2]);
}

}  // namespace

int main() {
  registerOperators();
  std::printf("nanoseconds a leaf\n%-11s %-11s %9s %9s %9s %8s %9s\n", "shape", "stage", "1,000", "10,000",
              "100,000", "growth", "cached");
  for (ShapeE shape : {ShapeE::flat_sum, ShapeE::constructs, ShapeE::mix}) printShape(shape);
  return 0;
}
