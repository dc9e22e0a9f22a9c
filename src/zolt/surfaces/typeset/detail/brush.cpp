#include "zolt/surfaces/typeset/detail/brush.h"

#include <cmath>

namespace zolt::surfaces {

namespace {

constexpr int curve_steps = 6;
/// The length of a cubic's control arm that makes it a quarter of a circle of radius 1.
constexpr double circle_arm = 0.5522847498;

PathPointS operator+(PathPointS a, PathPointS b) { return {a.x + b.x, a.y + b.y}; }
PathPointS operator-(PathPointS a, PathPointS b) { return {a.x - b.x, a.y - b.y}; }
PathPointS operator*(PathPointS a, double f) { return {a.x * f, a.y * f}; }

double lengthOf(PathPointS a) { return std::hypot(a.x, a.y); }

/// A smooth curve through all points. The control arms have the length of their own piece, so that a short
/// piece beside a long one does not loop.
void appendThrough(PathC& path, std::vector<PathPointS> const& side) {
  std::size_t const last = side.size() - 1;
  auto const direction = [&](std::size_t i) {
    PathPointS const along = side[i == last ? i : i + 1] - side[i == 0 ? i : i - 1];
    double const length = lengthOf(along);
    return length > 0 ? along * (1 / length) : PathPointS{};
  };
  for (std::size_t i = 0; i < last; ++i) {
    double const arm = lengthOf(side[i + 1] - side[i]) / 3;
    path.curveTo(side[i] + direction(i) * arm, side[i + 1] - direction(i + 1) * arm, side[i + 1]);
  }
}

/// Half a circle from `from` to its opposite `to`, bulging towards `ahead` (of length radius).
void appendCap(PathC& path, PathPointS from, PathPointS to, PathPointS ahead) {
  PathPointS const centre = (from + to) * 0.5, side = from - centre;
  PathPointS const tip = centre + ahead;
  path.curveTo(from + ahead * circle_arm, tip + side * circle_arm, tip);
  path.curveTo(tip - side * circle_arm, to + ahead * circle_arm, to);
}

}  // namespace

void BrushC::moveTo(BrushPointS p) { points_.assign(1, p); }

void BrushC::lineTo(BrushPointS p) {
  BrushPointS const from = points_.back();
  double const dx = p.x - from.x, dy = p.y - from.y;
  if (std::hypot(dx, dy) < 1e-9) return;
  // Points close to both ends keep a straight piece straight where it meets a bend.
  for (double const t : {0.02, 0.5, 0.98, 1.0}) {
    points_.push_back({from.x + dx * t, from.y + dy * t, from.radius + (p.radius - from.radius) * t});
  }
}

void BrushC::curveTo(PathPointS c1, PathPointS c2, BrushPointS p) {
  BrushPointS const from = points_.back();
  for (int i = 1; i <= curve_steps; ++i) {
    double const t = double(i) / curve_steps, u = 1 - t;
    double const b0 = u * u * u, b1 = 3 * u * u * t, b2 = 3 * u * t * t, b3 = t * t * t;
    double const ease = t * t * (3 - 2 * t);
    points_.push_back({b0 * from.x + b1 * c1.x + b2 * c2.x + b3 * p.x,
                       b0 * from.y + b1 * c1.y + b2 * c2.y + b3 * p.y,
                       from.radius + (p.radius - from.radius) * ease});
  }
}

void BrushC::finish(PathC& path) {
  std::size_t const count = points_.size();
  if (count < 2) {
    points_.clear();
    return;
  }
  std::vector<PathPointS> left(count), right(count);
  PathPointS firstAhead, lastAhead;
  for (std::size_t i = 0; i < count; ++i) {
    BrushPointS const& here = points_[i];
    BrushPointS const& before = points_[i == 0 ? 0 : i - 1];
    BrushPointS const& after = points_[i + 1 == count ? i : i + 1];
    double const dx = after.x - before.x, dy = after.y - before.y, length = std::hypot(dx, dy);
    PathPointS along{here.radius, 0};
    if (length > 0) along = {dx / length * here.radius, dy / length * here.radius};
    left[i] = {here.x + along.y, here.y - along.x};
    right[count - 1 - i] = {here.x - along.y, here.y + along.x};
    if (i == 0) firstAhead = along;
    lastAhead = along;
  }
  path.moveTo(left.front());
  appendThrough(path, left);
  appendCap(path, left.back(), right.front(), lastAhead);
  appendThrough(path, right);
  appendCap(path, right.back(), left.front(), {-firstAhead.x, -firstAhead.y});
  path.close();
  points_.clear();
}

void appendDisc(PathC& path, double x, double y, double radius) {
  appendRoundedBox(path, x - radius, y - radius, 2 * radius, 2 * radius, radius);
}

void appendRoundedBox(PathC& path, double x, double y, double width, double height, double radius) {
  double const right = x + width, bottom = y + height, arm = radius * (1 - circle_arm);
  path.moveTo({x + radius, y});
  path.lineTo({right - radius, y});
  path.curveTo({right - arm, y}, {right, y + arm}, {right, y + radius});
  path.lineTo({right, bottom - radius});
  path.curveTo({right, bottom - arm}, {right - arm, bottom}, {right - radius, bottom});
  path.lineTo({x + radius, bottom});
  path.curveTo({x + arm, bottom}, {x, bottom - arm}, {x, bottom - radius});
  path.lineTo({x, y + radius});
  path.curveTo({x, y + arm}, {x + arm, y}, {x + radius, y});
  path.close();
}

}  // namespace zolt::surfaces
