#pragma once

#include <cmath>

namespace zolt::surfaces {

/// A box, in surface units or device pixels.
struct BoxS {
  double x, y, width, height;
};

/// A straight horizontal or vertical line with square ends: the centres of its two ends, in surface units.
struct RuleS {
  double x1, y1, x2, y2;
  double thickness;

  /// Its ink reaches half the thickness beyond the centres, so that two rules with a common end make a sharp
  /// corner.
  BoxS box() const {
    return {std::fmin(x1, x2) - thickness / 2, std::fmin(y1, y2) - thickness / 2,
            std::fabs(x2 - x1) + thickness, std::fabs(y2 - y1) + thickness};
  }
};

/// The pixels that a rule covers when a unit is `scale` pixels and the surface starts at (originX, originY):
/// as thick as the nearest whole number of pixels, at least one, so that it is never blurred. Rules that meet
/// on the surface meet in pixels.
inline BoxS snapRule(RuleS const& rule, double scale, double originX, double originY) {
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
