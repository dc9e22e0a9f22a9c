#pragma once

#include <vector>

namespace zolt::plot {

/// A real function of one variable.
class PlottedFunctionABC {
 public:
  virtual ~PlottedFunctionABC() = default;

  /// False where it has no value.
  [[nodiscard]] virtual bool evaluate(double x, double* y) = 0;
  /// Whether it certainly has values and no jump between two places; false where nobody knows.
  [[nodiscard]] virtual bool isSmooth(double from, double to) = 0;
  /// False: sampling ends, with what there is.
  virtual bool mayGoOn() const { return true; }
};

/// A point of a curve, in the units of its axes.
struct PointS {
  double x = 0;
  double y = 0;
};

/// The part of the plane that is shown, and how large: its sizes in pixels, or whatever the eye tells apart.
struct WindowS {
  double left = -5, right = 5;
  double bottom = -5, top = 5;
  double width = 400, height = 300;

  double toX(double x) const { return (x - left) / (right - left) * width; }
  double toY(double y) const { return (top - y) / (top - bottom) * height; }
};

/// Pieces of a curve, each of which is one line; between two pieces it is interrupted.
using CurveT = std::vector<std::vector<PointS>>;

/// The graph of a function in a window, with as many points as its bends need. It is interrupted at poles,
/// jumps and wherever there are no values; where its domain ends, the curve goes up to there. Pieces above or
/// below the window are left out, and values far from it cut off. The number of evaluations is limited by the
/// width.
CurveT sampleCurve(PlottedFunctionABC& function, WindowS const& window);

/// Sets bottom and top so that what is typical of the function between left and right is seen: all of it, or
/// without the far ends of poles and steep slopes.
void fitHeight(PlottedFunctionABC& function, WindowS& window);

}  // namespace zolt::plot
