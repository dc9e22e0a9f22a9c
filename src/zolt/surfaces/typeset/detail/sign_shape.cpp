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

void appendProduct(PathC& path, double x, double y, double width, double height) {
  // In the box of the sum's sign, which keeps clear of the limits as that does.
  double const top = y + 0.75, bottom = y + height - 1.5;
  double const narrow = 0.9 * width, left = x + (width - narrow) / 2;
  double const stem = 0.118 * narrow, foot = 0.25 * narrow, serif = 0.45, bend = 0.04 * narrow;
  double const inner = left + foot - (foot - stem) / 2;
  auto const mirrored = [&](double u) { return 2 * left + narrow - u; };
  auto const appendFoot = [&](bool isRight) {
    auto const at = [&](double u, double v) { return PathPointS{isRight ? mirrored(u) : u, v}; };
    double const outer = inner - stem;
    path.moveTo(at(outer, top + serif));
    path.lineTo(at(inner, top + serif));
    path.lineTo(at(inner, bottom - serif - bend));
    path.curveTo(at(inner, bottom - serif), at(inner + bend, bottom - serif),
                 at(left + foot, bottom - serif));
    path.lineTo(at(left + foot, bottom));
    path.lineTo(at(left, bottom));
    path.lineTo(at(left, bottom - serif));
    path.curveTo(at(outer - bend, bottom - serif), at(outer, bottom - serif),
                 at(outer, bottom - serif - bend));
    path.close();
  };
  appendFoot(false);
  // The outline of the mirrored one runs the other way round, which fills it as well.
  appendFoot(true);
  path.moveTo({left, top});
  path.lineTo({left + narrow, top});
  path.lineTo({left + narrow, top + serif});
  path.lineTo({left, top + serif});
  path.close();
}

void appendSquareBracket(PathC& path, SideE side, double x, double y, double width, double height,
                         FontSizeS const& size) {
  double const growth = std::clamp((height / size.em - 1.2) / 2.4, 0.0, 1.0);
  double const thickness = (1.15 + 0.35 * growth) * getRuleThickness(size);
  double const inset = std::min(0.08 * size.em, height * 0.08);
  double const top = y + inset, bottom = y + height - inset;
  double const reach = 0.42 * width, from = side == SIDE_LEFT ? x + 0.4 * width : x + 0.6 * width;
  double const end = side == SIDE_LEFT ? from + reach : from - reach;
  double const stem = side == SIDE_LEFT ? from + thickness : from - thickness;
  path.moveTo({from, top});
  path.lineTo({end, top});
  path.lineTo({end, top + thickness});
  path.lineTo({stem, top + thickness});
  path.lineTo({stem, bottom - thickness});
  path.lineTo({end, bottom - thickness});
  path.lineTo({end, bottom});
  path.lineTo({from, bottom});
  path.close();
}

void appendBrace(PathC& path, SideE side, double x, double y, double width, double height,
                 FontSizeS const& size) {
  double const em = size.em, inset = std::min(0.08 * em, height * 0.08);
  double const top = y + inset, bottom = y + height - inset, middle = (top + bottom) / 2;
  double const growth = std::clamp((height / em - 1.2) / 2.4, 0.0, 1.0);
  double const stem = em * (0.034 + 0.022 * growth), tip = 0.018 * em;
  double const bend = std::min((bottom - top) / 4, 0.75 * em);
  auto const across = [&](double part) {
    return side == SIDE_LEFT ? x + part * width : x + (1 - part) * width;
  };
  double const stemX = across(0.52), tipX = across(0.14), endX = across(0.90);

  BrushC brush;
  brush.moveTo({endX, top + tip, tip});
  brush.curveTo({(endX + stemX) / 2, top + tip}, {stemX, top + 0.35 * bend}, {stemX, top + bend, stem});
  brush.lineTo({stemX, middle - bend, stem});
  brush.curveTo({stemX, middle - 0.4 * bend}, {(tipX + stemX) / 2, middle - 0.08 * bend},
                {tipX, middle, tip});
  brush.curveTo({(tipX + stemX) / 2, middle + 0.08 * bend}, {stemX, middle + 0.4 * bend},
                {stemX, middle + bend, stem});
  brush.lineTo({stemX, bottom - bend, stem});
  brush.curveTo({stemX, bottom - 0.35 * bend}, {(endX + stemX) / 2, bottom - tip}, {endX, bottom - tip, tip});
  brush.finish(path);
}

void appendHat(PathC& path, double x, double y, double width, double height, FontSizeS const& size) {
  // One that is as wide as its row stays flat.
  double const rise = std::min(height - 0.8, 0.12 * width + 1.0), top = y + height - 0.4 - rise;
  double const thick = 0.042 * size.em, thin = 0.018 * size.em, middle = x + width / 2;
  for (double const end : {x + 0.3, x + width - 0.3}) {
    BrushC brush;
    brush.moveTo({end, top + rise, thin});
    brush.lineTo({middle, top, thick});
    brush.finish(path);
  }
}

void appendArrow(PathC& path, double x, double y, double width, double height, FontSizeS const& size) {
  double const thin = getRuleThickness(size) / 2, shaft = y + height / 2, right = x + width - 0.2;
  double const head = 0.16 * size.em;
  BrushC brush;
  brush.moveTo({x + 0.3, shaft, thin});
  brush.lineTo({right - thin, shaft, thin});
  brush.finish(path);
  for (double const side : {-head, head}) {
    brush.moveTo({right - 1.15 * head, shaft + side, 0.8 * thin});
    brush.curveTo({right - 0.8 * head, shaft + 0.4 * side}, {right - 0.4 * head, shaft + 0.12 * side},
                  {right, shaft, thin});
    brush.finish(path);
  }
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
