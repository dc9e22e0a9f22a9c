#include "zolt/surfaces/typeset/detail/sign_shape.h"

#include <algorithm>
#include <cmath>

#include "zolt/surfaces/typeset/detail/brush.h"

namespace zolt::surfaces {

namespace {

using PointsT = std::vector<PathPointS>;

bool isSmallDiagonal(PathPointS a, PathPointS b, double limit) {
  double const dx = std::fabs(a.x - b.x), dy = std::fabs(a.y - b.y);
  return dx > 0 && dy > 0 && dx <= limit && dy <= limit;
}

/// A long upright stem with a hook to the right at its top and one to the left at its bottom.
bool drawIntegral(PointsT const& p, SignS& sign) {
  constexpr double hook = 2;
  if (p.size() != 6 || p[2].x != p[3].x || p[3].y - p[2].y < 3 * hook) return false;
  for (std::size_t const i : {0u, 1u, 3u, 4u}) {
    if (!isSmallDiagonal(p[i], p[i + 1], hook)) return false;
  }
  if (p[0].x <= p[1].x || p[1].x <= p[2].x || p[4].x >= p[3].x || p[5].x >= p[4].x) return false;

  double const left = p[5].x - 0.35, right = p[0].x + 1.35, top = p[1].y, bottom = p[4].y + 1;
  double const middleX = (left + right) / 2, middleY = (top + bottom) / 2, height = bottom - top;
  double const stem = std::clamp(0.34 + 0.009 * height, 0.45, 0.72), hair = 0.24, ball = 0.66;
  double const bend = std::min(0.30 * height, 9.0), slant = std::min(0.052 * height, 1.5);

  // One half, from the ball at its end to the centre; the other half is its mirror image through the centre.
  double const ballX = right - ball, ballY = top + ball + 0.75;
  auto const mirrored = [&](double x, double y) { return PathPointS{2 * middleX - x, 2 * middleY - y}; };
  auto const across = [&](double x, double y, double radius) {
    PathPointS const m = mirrored(x, y);
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
  brush.finish(sign.outline);
  appendDisc(sign.outline, ballX, ballY, ball);
  PathPointS const lower = mirrored(ballX, ballY);
  appendDisc(sign.outline, lower.x, lower.y, ball);
  return true;
}

/// Two bars and, from their left ends, two diagonals that meet between them.
bool drawSum(PointsT const& p, SignS& sign) {
  if (p.size() != 5 || p[0].y != p[1].y || p[3].y != p[4].y || p[1].x != p[3].x) return false;
  // The limits stand right above and below the strokes: the sign keeps clear of them, of their ascenders and
  // descenders too. Its bars end on whole and half units, which are sharp at whole scales.
  double const left = p[1].x, top = p[1].y + 1, width = p[0].x + 1 - left, height = p[3].y - 0.5 - top;
  double const upperBar = 1 / height, lowerBar = 1 - 1.5 / height;
  if (p[0].x != p[4].x || p[2].x <= left || p[2].x >= p[0].x || p[2].y <= top || p[2].y >= p[3].y)
    return false;

  auto const at = [&](double u, double v) { return PathPointS{left + u * width, top + v * height}; };
  PathC& path = sign.outline;
  path.moveTo(at(0.02, 0));
  path.lineTo(at(0.93, 0));
  path.lineTo(at(0.985, 0.215));
  path.lineTo(at(0.955, 0.215));
  path.curveTo(at(0.915, 0.10), at(0.85, upperBar), at(0.70, upperBar));
  path.lineTo(at(0.205, upperBar));
  path.lineTo(at(0.545, 0.475));
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
  return true;
}

/// A short diagonal down to the foot of an upright stroke, whose head carries a bar to the right.
bool drawRadical(PointsT const& p, FontSizeS const& size, SignS& sign) {
  if (p.size() != 4 || p[1].x != p[2].x || p[2].y != p[3].y || p[3].x < p[2].x || p[2].y >= p[1].y)
    return false;
  if (p[0].x >= p[1].x || p[0].y >= p[1].y || !isSmallDiagonal(p[0], p[1], 6)) return false;

  // A wide tick has an index above it and must stay low; a narrow one has all the height to itself.
  constexpr double wide_tick = 4;
  double const left = p[0].x - 0.6, foot = p[1].y + 0.9, height = foot - p[2].y, tick = p[1].x - left;
  double const thickness = getRuleThickness(size);
  double const rise = p[1].x - p[0].x >= wide_tick ? std::min(p[1].y - p[0].y + 0.4, height)
                                                   : std::clamp(0.46 * height, 4.0, 8.5);
  double const hair = 0.22, thick = 0.042 * size.em, thin = thickness / 2;
  double const tickX = left + 0.30 * tick, footX = left + 0.66 * tick + 0.25, headX = p[2].x + 0.5;
  double const tickY = foot - rise;

  BrushC brush;
  brush.moveTo({left + hair - 0.05, tickY + 0.85, hair});
  brush.lineTo({tickX, tickY + 0.25, hair});
  brush.finish(sign.outline);
  brush.moveTo({tickX, tickY + thick, thick});
  brush.lineTo({footX, foot - thick, thick});
  brush.finish(sign.outline);
  brush.moveTo({footX + 0.12, foot - thick, thin});
  brush.lineTo({headX, p[2].y + 0.5, thin});
  brush.finish(sign.outline);
  sign.hasBar = true;
  sign.bar = {headX, p[2].y + 0.5, p[3].x + 0.5, p[3].y + 0.5, thickness};
  return true;
}

bool drawSign(PointsT const& points, FontSizeS const& size, SignS& sign) {
  return drawIntegral(points, sign) || drawSum(points, sign) || drawRadical(points, size, sign);
}

}  // namespace

bool recogniseSign(ChainS const& chain, FontSizeS const& size, SignS& sign) {
  constexpr std::size_t most_points = 6;
  if (chain.crisp || chain.points.size() > most_points) return false;
  if (drawSign(chain.points, size, sign)) return true;
  PointsT const reversed(chain.points.rbegin(), chain.points.rend());
  return drawSign(reversed, size, sign);
}

}  // namespace zolt::surfaces
