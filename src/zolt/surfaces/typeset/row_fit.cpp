#include "zolt/surfaces/typeset/row_fit.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zolt::surfaces {

namespace {

// In ems. Round letters reach beyond flat ones by the overshoot.
constexpr double thickest_stroke = 0.14, shortest_edge = 0.03, overshoot = 0.03, reach = 0.06;
constexpr double x_height = 0.431, most_of_x_height = 0.46;
constexpr double capital_height = 0.683, least_of_capitals = 0.655, most_of_capitals = 0.72;

/// The slope up to which an edge is horizontal.
constexpr double steepest_edge = 0.06;

/// A horizontal piece of an outline, or the place where a curve turns.
struct EdgeS {
  double y;
  double left, right;
  bool isTop;  // the ink is below it
};

/// A row of ink between two edges, in pixels, and where it moves to.
struct StrokeS {
  double top, bottom;
  double newTop, newBottom;
};

class RowFitterC {
 public:
  RowFitterC(PathC const& outline, double unitsPerEm, double scale)
      : outline_(outline), em_(unitsPerEm * scale), scale_(scale) {}

  PathC fit() {
    collectEdges();
    pairEdges();
    place();
    PathC fitted;
    for (PathStepS step : outline_.getSteps()) {
      for (int i = 0; i < step.countPoints(); ++i) {
        step.points[i] = {step.points[i].x * scale_, map(step.points[i].y * scale_)};
      }
      fitted.append(step);
    }
    return fitted;
  }

 private:
  void collectEdges() {
    double area = 0;
    PathPointS at, start;
    auto const addEdge = [&](PathPointS from, PathPointS to) {
      double const length = std::fabs(to.x - from.x) * scale_;
      if (length < shortest_edge * em_ || std::fabs(to.y - from.y) * scale_ > steepest_edge * length) return;
      edges_.push_back(
          {to.y * scale_, std::min(from.x, to.x) * scale_, std::max(from.x, to.x) * scale_, to.x > from.x});
    };
    for (PathStepS const& step : outline_.getSteps()) {
      PathPointS const* const p = step.points;
      PathPointS const to = step.verb == PATH_CLOSE ? start : p[step.countPoints() - 1];
      area += at.x * to.y - to.x * at.y;
      if (step.verb == PATH_MOVE) {
        start = to;
      } else if (step.verb == PATH_CURVE) {
        addEdge(at, p[0]);
        addEdge(p[1], to);
      } else {
        addEdge(at, to);
      }
      at = to;
    }
    // Outer outlines run clockwise in some formats of fonts and the other way round in others.
    if (area < 0) {
      for (EdgeS& edge : edges_) edge.isTop = !edge.isTop;
    }
  }

  void pairEdges() {
    for (EdgeS const& top : edges_) {
      if (!top.isTop) continue;
      EdgeS const* nearest = nullptr;
      for (EdgeS const& bottom : edges_) {
        bool const beside = bottom.right + reach * em_ <= top.left || bottom.left >= top.right + reach * em_;
        double const thickness = bottom.y - top.y;
        if (bottom.isTop || beside || thickness <= 0 || thickness > thickest_stroke * em_) continue;
        if (!nearest || bottom.y < nearest->y) nearest = &bottom;
      }
      if (nearest) strokes_.push_back({top.y, nearest->y, 0, 0});
    }
    std::sort(strokes_.begin(), strokes_.end(),
              [](StrokeS const& a, StrokeS const& b) { return a.top < b.top; });
    // Strokes that overlap, like the flat and the round part of a foot, move as one.
    std::vector<StrokeS> apart;
    for (StrokeS const& stroke : strokes_) {
      if (!apart.empty() && stroke.top < apart.back().bottom) {
        apart.back().bottom = std::max(apart.back().bottom, stroke.bottom);
      } else {
        apart.push_back(stroke);
      }
    }
    strokes_ = std::move(apart);
  }

  void place() {
    for (std::size_t i = 0; i < strokes_.size(); ++i) {
      StrokeS& stroke = strokes_[i];
      double const thickness = std::max(1.0, std::round(stroke.bottom - stroke.top));
      double const height = -stroke.top / em_;
      if (std::fabs(stroke.bottom) <= overshoot * em_) {
        stroke.newTop = -thickness;
      } else if (height >= x_height - overshoot && height <= most_of_x_height) {
        stroke.newTop = -std::round(x_height * em_);
      } else if (height >= least_of_capitals && height <= most_of_capitals) {
        stroke.newTop = -std::round(capital_height * em_);
      } else {
        stroke.newTop = std::round((stroke.top + stroke.bottom - thickness) / 2);
      }
      if (i > 0) {
        StrokeS const& before = strokes_[i - 1];
        double const gap = stroke.top - before.bottom > 0.4 ? 1 : 0;
        stroke.newTop = std::max(stroke.newTop, before.newBottom + gap);
      }
      stroke.newBottom = stroke.newTop + thickness;
    }
  }

  double map(double y) const {
    if (strokes_.empty()) return y;
    double fromY = strokes_.front().top, from = strokes_.front().newTop;
    if (y <= fromY) return y + from - fromY;
    for (StrokeS const& stroke : strokes_) {
      for (auto const& [atY, at] :
           {std::pair{stroke.top, stroke.newTop}, {stroke.bottom, stroke.newBottom}}) {
        if (y <= atY) return atY > fromY ? from + (y - fromY) * (at - from) / (atY - fromY) : at;
        fromY = atY;
        from = at;
      }
    }
    return y + from - fromY;
  }

  PathC const& outline_;
  double em_, scale_;  // pixels per em and per unit
  std::vector<EdgeS> edges_;
  std::vector<StrokeS> strokes_;
};

}  // namespace

PathC fitToRows(PathC const& outline, double unitsPerEm, double scale) {
  return RowFitterC(outline, unitsPerEm, scale).fit();
}

}  // namespace zolt::surfaces
