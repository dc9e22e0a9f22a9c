#include "zolt/plot/curve_sampler.h"

#include <algorithm>
#include <cmath>

namespace zolt::plot {

namespace {

constexpr double first_step = 3;      // pixels
constexpr double flatness = 0.2;      // pixels from the chord
constexpr double least_jump = 1.5;    // pixels; what is lower is joined
constexpr unsigned deepest = 10;      // halvings of the first step
constexpr unsigned unsafe_depth = 3;  // at least, where there may be a pole
constexpr unsigned most_in_step = 200;
constexpr double far_away = 50;  // heights of the window

struct SampleS {
  double x = 0, y = 0;
  bool isDefined = false;
};

class SamplerC {
 public:
  SamplerC(PlottedFunctionABC& function, WindowS const& window) : function_(function), window_(window) {}

  CurveT run() {
    auto const steps = static_cast<unsigned>(std::clamp(window_.width / first_step, 8.0, 4000.0));
    double const width = window_.right - window_.left;
    SampleS last = sample(window_.left);
    if (last.isDefined) add(last);
    for (unsigned i = 1; i <= steps && function_.mayGoOn(); ++i) {
      SampleS const next = sample(window_.left + width * i / steps);
      left_ = most_in_step;
      join(last, next);
      last = next;
    }
    interrupt();
    return std::move(curve_);
  }

 private:
  struct SpanS {
    SampleS from, to;
    unsigned depth;
    bool isSafe;
  };

  SampleS sample(double x) {
    SampleS found{x, 0, false};
    found.isDefined = function_.evaluate(x, &found.y) && std::isfinite(found.y);
    return found;
  }

  void add(SampleS const& sample) {
    double const middle = 0.5 * (window_.top + window_.bottom);
    double const reach = far_away * (window_.top - window_.bottom);
    piece_.push_back({sample.x, std::clamp(sample.y, middle - reach, middle + reach)});
  }

  void interrupt() {
    // The tip of a pole may be a piece of its own.
    auto const isAbove = [this](PointS const& point) { return point.y > window_.top; };
    auto const isBelow = [this](PointS const& point) { return point.y < window_.bottom; };
    bool const isUnseen = std::all_of(piece_.begin(), piece_.end(), isAbove) ||
                          std::all_of(piece_.begin(), piece_.end(), isBelow);
    if (!isUnseen) curve_.push_back(std::move(piece_));
    piece_.clear();
  }

  bool isBent(SampleS const& a, SampleS const& m, SampleS const& b) const {
    bool const isAbove = a.y > window_.top && m.y > window_.top && b.y > window_.top;
    bool const isBelow = a.y < window_.bottom && m.y < window_.bottom && b.y < window_.bottom;
    if (isAbove || isBelow) return false;
    double const ax = window_.toX(a.x), ay = window_.toY(a.y);
    double const dx = window_.toX(b.x) - ax, dy = window_.toY(b.y) - ay;
    double const mx = window_.toX(m.x) - ax, my = window_.toY(m.y) - ay;
    return std::fabs(mx * dy - my * dx) > flatness * std::hypot(dx, dy);
  }

  // Left to right, without recursion; the point at the left end of a span has been added.
  void join(SampleS const& from, SampleS const& to) {
    std::vector<SpanS> waiting{{from, to, 0, function_.isSmooth(from.x, to.x)}};
    while (!waiting.empty()) {
      SpanS const span = waiting.back();
      waiting.pop_back();
      SampleS const &a = span.from, &b = span.to;
      if (!a.isDefined && !b.isDefined && (span.isSafe || span.depth >= unsafe_depth)) continue;
      bool const isLast = span.depth == deepest || left_ == 0 || !function_.mayGoOn();
      if (!isLast) {
        --left_;
        SampleS const m = sample(0.5 * (a.x + b.x));
        bool const isOneSided = a.isDefined != b.isDefined || !m.isDefined;
        bool const isDoubtful = !span.isSafe && (span.depth < unsafe_depth || isJump(a, b));
        if (isOneSided || isDoubtful || isBent(a, m, b)) {
          bool const isSafe = span.isSafe;
          unsigned const depth = span.depth + 1;
          waiting.push_back({m, b, depth, isSafe || (isDoubtful && function_.isSmooth(m.x, b.x))});
          waiting.push_back({a, m, depth, isSafe || (isDoubtful && function_.isSmooth(a.x, m.x))});
          continue;
        }
        add(m);
        add(b);
        continue;
      }
      bool const isJoined =
          a.isDefined && b.isDefined && (span.isSafe || !isJump(a, b) || function_.isSmooth(a.x, b.x));
      if (!isJoined) interrupt();
      if (b.isDefined) add(b);
    }
  }

  bool isJump(SampleS const& a, SampleS const& b) const {
    return a.isDefined && b.isDefined && std::fabs(window_.toY(a.y) - window_.toY(b.y)) > least_jump;
  }

  PlottedFunctionABC& function_;
  WindowS const& window_;
  CurveT curve_;
  std::vector<PointS> piece_;
  unsigned left_ = 0;
};

}  // namespace

CurveT sampleCurve(PlottedFunctionABC& function, WindowS const& window) {
  return SamplerC(function, window).run();
}

void fitHeight(PlottedFunctionABC& function, WindowS& window) {
  constexpr unsigned samples = 301;
  std::vector<double> values;
  for (unsigned i = 0; i < samples && function.mayGoOn(); ++i) {
    // Not at places such as 0, where poles often are.
    double const x = window.left + (window.right - window.left) * (i + 0.37) / samples;
    double y = 0;
    if (function.evaluate(x, &y) && std::isfinite(y)) values.push_back(y);
  }
  window.bottom = -1;
  window.top = 1;
  if (values.empty()) return;
  std::sort(values.begin(), values.end());
  auto const quantile = [&](double part) {
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
  };
  double low = values.front(), high = values.back();
  double const usual = quantile(0.9) - quantile(0.1);
  if (usual > 0 && high - low > 5 * usual) {
    low = std::max(low, quantile(0.05) - 0.3 * usual);
    high = std::min(high, quantile(0.95) + 0.3 * usual);
  }
  double span = high - low;
  // The axis is shown when it is near.
  if (low > 0 && low < 0.5 * span) low = 0;
  if (high < 0 && -high < 0.5 * span) high = 0;
  span = high - low;
  double const least = std::max(1e-12, 1e-9 * std::max(std::fabs(low), std::fabs(high)));
  double const margin = span > least ? 0.08 * span : std::max(1.0, 0.5 * std::fabs(high));
  window.bottom = low - margin;
  window.top = high + margin;
}

}  // namespace zolt::plot
