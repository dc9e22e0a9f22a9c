// How each stage grows with the nesting: every operator nested in each of its arguments, in its first and its
// last by turns, and by turns with a sum, at 25,000 and at 100,000 levels. Prints nanoseconds of processor
// time a level and the ratio of the two. It is near 1 where time is in proportion, up to 3 where the smaller
// formula is still in the cache, and 4 where time is quadratic; rows with a ratio beyond 3 are marked.

#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "bench/stages.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace {

using namespace zolt::bench;
using zolt::math::ved::OperatorBC;
using zolt::oss::wstring;
using zolt::surfaces::RecordingGraphicsC;

constexpr unsigned long levels[] = {25000, 100000};

/// One level of a nesting: what comes before and after the next one in prefix text.
struct LevelS {
  wstring before, after;
};

LevelS callOf(OperatorBC const& op, unsigned long argument) {
  LevelS level{op.getName() + u"(", u""};
  for (unsigned long i = 0; i < argument; ++i) level.before += u"a,";
  for (unsigned long i = argument + 1; i < op.getArity(); ++i) level.after += u",b";
  level.after += u")";
  return level;
}

wstring nest(LevelS const& even, LevelS const& odd, unsigned long count) {
  wstring before;
  wstring after;
  for (unsigned long i = 0; i < count; ++i) before += (i % 2 == 0 ? even : odd).before;
  for (unsigned long i = count; i-- > 0;) after += (i % 2 == 0 ? even : odd).after;
  return before + u"x" + after;
}

constexpr char const* stages[] = {"read", "build", "layout", "draw", "write"};

/// Seconds for each stage.
std::vector<double> measure(wstring const& prefix) {
  std::vector<double> seconds;
  auto const run = [&](auto const& stage) {
    std::clock_t const start = std::clock();
    stage();
    seconds.push_back(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  };
  RecordingGraphicsC const surface(RecordingGraphicsC::LOG_NOTHING);
  ExpressionT expression;
  TreeT tree;
  run([&] { expression = readPrefix(prefix); });
  run([&] { tree = buildTree(expression); });
  run([&] { layOut(*tree, surface); });
  run([&] { draw(*tree, surface); });
  run([&] { expression = writeExpression(*tree); });
  return seconds;
}

void print(std::string const& name, LevelS const& even, LevelS const& odd) {
  auto const small = measure(nest(even, odd, levels[0]));
  auto const large = measure(nest(even, odd, levels[1]));
  std::printf("%-24s", name.c_str());
  bool grows = false;
  for (std::size_t i = 0; i < small.size(); ++i) {
    double const least = small[i] * 1e9 / static_cast<double>(levels[0]);
    double const most = large[i] * 1e9 / static_cast<double>(levels[1]);
    bool const counts = most > 100;  // less is noise
    grows |= counts && most > 3 * least;
    std::printf("%7.0f%5.1f", most, counts ? most / least : 1.0);
  }
  std::printf("%s\n", grows ? "  <<<" : "");
}

}  // namespace

int main() {
  registerOperators();
  auto const operators = zolt::math::ved::OperatorListRepositoryC::lookup(
      zolt::math::algexpr::CASSessionBC::getSession()->getEngine());
  std::printf("%-24s", "ns a level, growth");
  for (char const* const stage : stages) std::printf("%12s", stage);
  std::printf("\n");
  LevelS const sum = callOf(*operators->lookup(u"+"), 1);
  for (OperatorBC const* const op : operators->crefInOrder()) {
    std::string name;
    for (char16_t const c : op->getName()) name += c < 128 ? static_cast<char>(c) : '?';
    unsigned long const arity = op->getArity();
    for (unsigned long i = 0; i < arity; ++i) {
      print(name + " in " + std::to_string(i), callOf(*op, i), callOf(*op, i));
    }
    if (arity > 1) print(name + " first, last", callOf(*op, 0), callOf(*op, arity - 1));
    if (arity > 0) print(name + " last, sum", callOf(*op, arity - 1), sum);
  }
  return 0;
}
