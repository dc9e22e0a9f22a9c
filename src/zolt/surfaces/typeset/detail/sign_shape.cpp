#include "zolt/surfaces/typeset/detail/sign_shape.h"

#include <algorithm>

#include "zolt/surfaces/typeset/detail/brush.h"

namespace zolt::surfaces {

/// A long upright stem with a hook to the right at its top and one to the left at its bottom.
void appendIntegral(PathC& path, double x, double y, double width, double height) {
  // The upper bound starts a unit right of the box; before the box there is the gap of the row.
  double const left = x - 1.05, right = x + width - 0.35, top = y, bottom = y + height;
  double const middleX = (left + right) / 2, middleY = (top + bottom) / 2;
  double const stem = std::clamp(0.34 + 0.009 * height, 0.45, 0.72), hair = 0.24, ball = 0.66;
  double const bend = std::min(0.30 * height, 9.0), slant = std::min(0.052 * height, 1.5);

  // This is one half, from the ball at its end to the centre; the other half is its mirror image through the
  // centre.
  double const ballX = right - ball, ballY = top + ball + 0.75;
  auto const mirrored = [&](double u, double v) { return PathPointS{2 * middleX - u, 2 * middleY - v}; };
  auto const across = [&](double u, double v, double radius) {
    PathPointS const m = mirrored(u, v);
    return BrushPointS{m.x, m.y, radius};
  };
  double const apexX = right - 1.25, apexY = top + hair;
  double const shoulderX = middleX + slant * 0.55, shoulderY = top + bend;
  BrushC brush;
  brush.moveTo({ballX + 0.34, ballY - 0.2, hair});
  brush.curveTo({ballX + 0.22, apexY + 0.25}, {apexX + 0.42, apexY}, {apexX, apexY, hair});
  brush.curveTo({apexX - 1.05, apexY}, {shoulderX + slant * 0.45, top + 0.42 * bend},
                {shoulderX, shoulderY, stem * 0.82});
  brush.curveTo({shoulderX - slant * 0.2, shoulderY + 0.35 * (middleY - shoulderY)},
                {middleX + slant * 0.12, middleY - 0.3 * (middleY - shoulderY)}, {middleX, middleY, stem});
  brush.curveTo(mirrored(middleX + slant * 0.12, middleY - 0.3 * (middleY - shoulderY)),
                mirrored(shoulderX - slant * 0.2, shoulderY + 0.35 * (middleY - shoulderY)),
                across(shoulderX, shoulderY, stem * 0.82));
  brush.curveTo(mirrored(shoulderX + slant * 0.45, top + 0.42 * bend), mirrored(apexX - 1.05, apexY),
                across(apexX, apexY, hair));
  brush.curveTo(mirrored(apexX + 0.42, apexY), mirrored(ballX + 0.22, apexY + 0.25),
                across(ballX + 0.34, ballY - 0.2, hair));
  brush.finish(path);
  appendDisc(path, ballX, ballY, ball);
  PathPointS const lower = mirrored(ballX, ballY);
  appendDisc(path, lower.x, lower.y, ball);
}

void appendSum(PathC& path, double x, double y, double width, double height) {
  // The limits are right above the box and from a unit above its end on: the sign keeps clear of them,
  // including their ascenders and descenders, and is narrower than the box to keep its proportions.
  double const top = y + 0.75, ink = y + height - 2.25 - top;
  double const upperBar = 0.75 / ink, lowerBar = 1 - 1.25 / ink;
  double const narrow = 0.88 * width, left = x + (width - narrow) / 2;
  auto const at = [&](double u, double v) { return PathPointS{left + u * narrow, top + v * ink}; };
  path.moveTo(at(0.02, 0));
  path.lineTo(at(0.93, 0));
  path.lineTo(at(0.985, 0.215));
  path.lineTo(at(0.955, 0.215));
  path.curveTo(at(0.915, 0.10), at(0.85, upperBar), at(0.70, upperBar));
  path.lineTo(at(0.205, upperBar));
  path.lineTo(at(0.52, 0.478));
  path.lineTo(at(0.165, lowerBar));
  path.lineTo(at(0.72, lowerBar));
  path.curveTo(at(0.865, lowerBar), at(0.92, 0.86), at(0.955, 0.755));
  path.lineTo(at(0.985, 0.755));
  path.lineTo(at(0.93, 1));
  path.lineTo(at(0.02, 1));
  path.curveTo(at(0.005, 1), at(0.005, 0.975), at(0.018, 0.962));
  path.lineTo(at(0.415, 0.512));
  path.lineTo(at(0.015, 0.035));
  path.curveTo(at(0.005, 0.02), at(0.005, 0), at(0.02, 0));
  path.close();
}

void appendRadical(PathC& path, double x, double y, double height, double tick, bool hasIndex,
                   FontSizeS const& size) {
  // Without an index above it, the tick uses the whole height.
  double const left = x - 0.6, foot = y + height - 0.1, ink = foot - y, reach = x + tick - left;
  double const thickness = getRuleThickness(size);
  double const rise = hasIndex ? std::min(tick + 0.4, ink) : std::clamp(0.46 * ink, 4.0, 8.5);
  double const hair = 0.22, thick = 0.042 * size.em, thin = thickness / 2;
  double const tickX = left + 0.30 * reach, footX = left + 0.66 * reach + 0.25, headX = x + tick + 0.5;
  double const tickY = foot - rise;

  BrushC brush;
  brush.moveTo({left + hair - 0.05, tickY + 0.85, hair});
  brush.lineTo({tickX, tickY + 0.25, hair});
  brush.finish(path);
  brush.moveTo({tickX, tickY + thick, thick});
  brush.lineTo({footX, foot - thick, thick});
  brush.finish(path);
  brush.moveTo({footX + 0.12, foot - thick, thin});
  brush.lineTo({headX, y + 0.5, thin});
  brush.finish(path);
}

}  // namespace zolt::surfaces
