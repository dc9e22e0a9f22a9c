#pragma once

#include <cmath>

namespace zolt::surfaces {

/// A straight horizontal or vertical line with square ends: the centres of its two ends, in surface units.
/// Its ink reaches half the thickness beyond them, so that two rules with a common end make a sharp corner.
struct RuleS {
  double x1, y1, x2, y2;
  double thickness;
};

/// A box of whole device pixels.
struct PixelBoxS {
  double x, y, width, height;
};

/// The pixels that a rule covers when a unit is `scale` pixels and the surface starts at (originX, originY):
/// as thick as the nearest whole number of pixels, at least one, so that it is never blurred. Rules that meet
/// on the surface meet in pixels.
inline PixelBoxS snapRule(RuleS const& rule, double scale, double originX, double originY) {
  double const thickness = std::fmax(1.0, std::round(rule.thickness * scale));
  auto const snap = [&](double centre, double origin) {
    return std::round(origin + centre * scale - thickness / 2);
  };
  double const left = snap(std::fmin(rule.x1, rule.x2), originX);
  double const top = snap(std::fmin(rule.y1, rule.y2), originY);
  double const right = snap(std::fmax(rule.x1, rule.x2), originX) + thickness;
  double const bottom = snap(std::fmax(rule.y1, rule.y2), originY) + thickness;
  return {left, top, right - left, bottom - top};
}

}  // namespace zolt::surfaces
