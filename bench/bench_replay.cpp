// Replays event scripts on a formula field on the recording surface, with the layout after each step and
// without drawing: the scripts named on the command line, or those in bench/scripts. Prints processor time
// per step and the number of texts measured, for the best of several rounds.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "bench/stages.h"
#include "zolt/field/formula_field.h"
#include "zolt/oss/utf8.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace {

using zolt::surfaces::RecordingGraphicsC;

bool readScript(char const* path, zolt::field::EventScriptT& script) {
  std::ifstream in(path, std::ios::binary);
  std::string const text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  unsigned long position = 0;
  zolt::oss::wstring decoded;
  return in && zolt::oss::fromUtf8(text, decoded) && zolt::script::readEventScript(decoded, script, position);
}

bool replay(char const* path) {
  zolt::field::EventScriptT script;
  if (!readScript(path, script) || script.empty()) {
    std::fprintf(stderr, "%s: not a script\n", path);
    return false;
  }
  double best = std::numeric_limits<double>::max();
  unsigned long measured = 0;
  for (int round = 0; round < 50; ++round) {
    zolt::oss::PointerTC<RecordingGraphicsC> const surface(
        new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING));
    zolt::field::FormulaFieldC field(surface);
    zolt::script::ScriptRunnerC runner(field);
    std::clock_t const start = std::clock();
    for (auto const& step : script) {
      runner.run(step);
      field.refView().getExpressionSize();
    }
    best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    measured = surface->getMeasureCount();
  }
  auto const steps = static_cast<double>(script.size());
  std::printf("%s: %zu steps, %.1f us a step, %.1f texts measured a step\n", path, script.size(),
              best * 1e6 / steps, static_cast<double>(measured) / steps);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  zolt::bench::registerOperators();
  std::vector<char const*> paths(argv + 1, argv + argc);
  if (paths.empty()) paths.push_back(ZOLT_BENCH_SCRIPTS "/quadratic_formula.script");
  bool all = true;
  for (char const* path : paths) all = replay(path) && all;
  return all ? 0 : 1;
}
