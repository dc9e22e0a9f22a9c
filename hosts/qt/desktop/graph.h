#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "zolt/algexpr/cas_request.h"
#include "zolt/plot/axis_ticks.h"
#include "zolt/plot/curve_sampler.h"

class QPainter;
class QPalette;

namespace zolt::desktop {

/// A function of one variable, for a graph.
struct GraphedFunction {
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression;
  oss::wstring variable;
  oss::PointerTC<math::algexpr::CASDefinitionsC> definitions;
  math::algexpr::CASAngleE angle = math::algexpr::CAS_RADIANS;
  bool isTrigonometric = false;  ///< as `isTrigonometric` tells

  /// Whether both have the same graph.
  bool equals(GraphedFunction const& other) const;
};

/// Whether there are sines, cosines or tangents in it, each of an angle that grows evenly with the variable
/// and by a rational number: such a function repeats itself at multiples of π, and `sin(1/x)` does not.
bool isTrigonometric(math::algexpr::NodeABC const& node, oss::wstring const& variable);

/// What a graph shows: a window of the plane and the curve in it.
struct Graph {
  plot::WindowS window;
  plot::CurveT curve;
  plot::TickUnitE unit = plot::TICKS_OF_ONE;  ///< of the horizontal axis
  bool decimalComma = false;                  ///< in what is written at it
};

/// A number of an axis as it is shown.
QString writeLabel(oss::wstring const& number, bool decimalComma);

/// Samples a graph, on any thread, until a stop is asked for. Without a window it chooses one. The size is
/// that of `window`, in pixels.
Graph sampleGraph(GraphedFunction const& function, plot::WindowS window, bool choosesWindow,
                  oss::PointerTC<math::algexpr::CASStopC> const& stop);

struct GraphColours {
  QColor paper, grid, axis, text, curve;

  static GraphColours of(QPalette const& palette);
  static GraphColours onPaper();
};

/// Paints a graph into a box, with the curve of another window moved to where it belongs.
void paintGraph(QPainter& painter, QRectF const& box, Graph const& graph, plot::WindowS const& shown,
                GraphColours const& colours);

}  // namespace zolt::desktop
