#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/engines/basic/real_function.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/plot/axis_ticks.h"
#include "zolt/plot/curve_sampler.h"

namespace zolt::plot {
namespace {

using namespace math::algexpr;

/// A function of x in plain text, on the embedded engine.
class TextFunctionC final : public PlottedFunctionABC {
 public:
  explicit TextFunctionC(std::string const& text)
      : function_(*exchange::fromPlainText(tests::toText(text), CASSessionBC::getSession()), u"x", nullptr,
                  CAS_RADIANS, std::chrono::seconds(60)) {}

  bool evaluate(double x, double* y) override {
    ++numEvaluated;
    return function_.evaluate(x, y);
  }
  bool isSmooth(double from, double to) override { return function_.isSmooth(from, to); }
  bool isValid() const { return function_.isValid(); }

  unsigned numEvaluated = 0;

 private:
  engine_basic::RealFunctionC function_;
};

/// "-5..-0.01 0.01..5": where the pieces of the curve begin and end.
std::string describePieces(CurveT const& curve) {
  std::string text;
  for (auto const& piece : curve) {
    auto const round = [](double x) {
      std::string shown = std::to_string(std::round(x * 10) / 10 + 0.0);
      return shown.substr(0, shown.find('.') + 2);
    };
    text += (text.empty() ? "" : " ") + round(piece.front().x) + ".." + round(piece.back().x);
  }
  return text;
}

TEST(Plot, interruptsCurvesWhereFunctionsAre) {
  tests::standardOperators();
  std::pair<char const*, char const*> const cases[] = {
      {"x^2", "-5.0..5.0"},
      {"1/x", "-5.0..0.0 0.0..5.0"},
      {"1/(x-0.123)", "-5.0..0.1 0.1..5.0"},
      {"1/(x-0.123)^2", "-5.0..0.1 0.1..5.0"},
      {"tan(x)", "-5.0..-4.7 -4.7..-1.6 -1.6..1.6 1.6..4.7 4.7..5.0"},
      {"floor(x/2)", "-5.0..-4.0 -4.0..-2.0 -2.0..0.0 0.0..2.0 2.0..4.0 4.0..5.0"},
      {"sqrt(x)", "0.0..5.0"},
      {"ln(x-1)", "1.0..5.0"},
      {"sqrt(1-x^2)", "-1.0..1.0"},
      {"tanh(1000*x)", "-5.0..5.0"},
      {"abs(x)", "-5.0..5.0"},
      {"3", "-5.0..5.0"},
      {"7", ""},
      {"sqrt(-1-x^2)", ""},
  };
  for (auto const& [text, pieces] : cases) {
    TextFunctionC function(text);
    ASSERT_TRUE(function.isValid()) << text;
    CurveT const curve = sampleCurve(function, {});
    EXPECT_EQ(describePieces(curve), pieces) << text;
    EXPECT_LT(function.numEvaluated, 6000U) << text;
    for (auto const& piece : curve) {
      EXPECT_TRUE(std::is_sorted(piece.begin(), piece.end(), [](auto a, auto b) { return a.x < b.x; }))
          << text;
    }
  }
  EXPECT_FALSE(TextFunctionC("x+y").isValid());
  EXPECT_FALSE(TextFunctionC("x<1").isValid());
}

TEST(Plot, followsTheCurveToAPixel) {
  for (char const* const text : {"sin(x)", "sin(20*x)", "exp(x)", "x^3-3*x", "abs(x-0.3)", "sqrt(4-x^2)"}) {
    TextFunctionC function(text);
    WindowS const window;
    double worst = 0;
    for (auto const& piece : sampleCurve(function, window)) {
      for (std::size_t i = 1; i < piece.size(); ++i) {
        double y = 0;
        PointS const a = piece[i - 1], b = piece[i];
        bool const isSeen = std::min(a.y, b.y) < window.top && std::max(a.y, b.y) > window.bottom;
        if (!isSeen || !function.evaluate(0.5 * (a.x + b.x), &y)) continue;
        // Across the line, since a steep one is off in y by more.
        double const dx = window.toX(b.x) - window.toX(a.x), dy = window.toY(b.y) - window.toY(a.y);
        double const off = window.toY(y) - window.toY(0.5 * (a.y + b.y));
        worst = std::max(worst, std::fabs(off * dx) / std::hypot(dx, dy));
      }
    }
    EXPECT_LT(worst, 1) << text;
  }
  TextFunctionC straight("2*x");
  TextFunctionC curved("sin(20*x)");
  static_cast<void>(sampleCurve(curved, {}));
  static_cast<void>(sampleCurve(straight, {}));
  EXPECT_LT(2 * straight.numEvaluated, curved.numEvaluated) << "a line needs no points between its ends";
}

TEST(Plot, choosesTheHeightThatShowsTheFunction) {
  auto const fit = [](char const* text) {
    TextFunctionC function(text);
    WindowS window;
    fitHeight(function, window);
    return window;
  };
  EXPECT_GT(fit("x^2").top, 24);
  EXPECT_LT(fit("x^2").bottom, 0);
  EXPECT_LT(fit("1/x").top, 20) << "not up to the pole";
  EXPECT_LT(fit("tan(x)").top, 30);
  WindowS const constant = fit("7");
  EXPECT_TRUE(constant.bottom < 7 && constant.top > 7);
  EXPECT_LT(fit("sqrt(-1-x^2)").bottom, 0);
}

std::string labels(double from, double to, unsigned most, TickUnitE unit = TICKS_OF_ONE) {
  std::string text;
  for (TickS const& tick : makeTicks(from, to, most, unit)) {
    text += (text.empty() ? "" : " ") + tests::toUtf8(tick.label);
  }
  return text;
}

TEST(Plot, putsTicksAtRoundNumbers) {
  EXPECT_EQ(labels(-5, 5, 5), "−4 −2 0 2 4");
  EXPECT_EQ(labels(0, 1, 5), "0.0 0.2 0.4 0.6 0.8 1.0");
  EXPECT_EQ(labels(0.1, 0.115, 4), "0.100 0.105 0.110 0.115");
  EXPECT_EQ(labels(-3e8, 3e8, 4), "−2·10⁸ 0 2·10⁸");
  EXPECT_EQ(labels(0, 3e-8, 4), "0 1·10⁻⁸ 2·10⁻⁸ 3·10⁻⁸");
  EXPECT_EQ(labels(1000000, 1000003, 4), "1.000000·10⁶ 1.000001·10⁶ 1.000002·10⁶ 1.000003·10⁶");
  EXPECT_EQ(labels(-6.5, 6.5, 5, TICKS_OF_PI), "−2π −π 0 π 2π");
  EXPECT_EQ(labels(0, 3.2, 7, TICKS_OF_PI), "0 π/6 π/3 π/2 2π/3 5π/6 π");
  EXPECT_EQ(labels(0, 100, 5, TICKS_OF_PI), "0 10π 20π 30π");
  EXPECT_EQ(labels(0, 0.1, 3, TICKS_OF_PI), "0.00 0.05 0.10") << "no simple part of it";
  EXPECT_EQ(labels(2, 2, 5), "");
  EXPECT_EQ(labels(1, 1 + 1e-15, 5), "");
  EXPECT_EQ(tests::toUtf8(writeValue(3.14159265, 0.01)), "3.14");
  EXPECT_EQ(tests::toUtf8(writeValue(-0.0001, 0.01)), "0.00");
}

}  // namespace
}  // namespace zolt::plot
