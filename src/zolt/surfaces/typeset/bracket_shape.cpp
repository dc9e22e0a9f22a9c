#include "zolt/surfaces/typeset/bracket_shape.h"

#include <algorithm>

#include "zolt/surfaces/typeset/detail/brush.h"

namespace zolt::surfaces {

namespace {

double mix(double a, double b, double t) { return a + (b - a) * t; }

/// How far the height is between that of the letter and the greatest one that is drawn as a single bend.
double growthOf(double height, double em) { return std::clamp((height / em - 1.2) / 2.4, 0.0, 1.0); }

}  // namespace

void appendBracket(PathC& path, BracketSideE side, BracketPlaceE place, double x, double y, double height,
                   FontSizeS const& size) {
  if (height <= 0) return;
  double const em = size.em, cell = double(size.metrics[1]);
  double const growth = growthOf(height, em);
  double const inset = std::min(0.08 * em, height * 0.08);
  double const top = y + inset, bottom = y + height - inset, half = (bottom - top) / 2;
  double const bend = std::min(half, 1.5 * em);
  double const strength = em * std::min(1.0, height / (0.6 * em));
  double const middleRadius = strength * mix(0.036, 0.056, growth);
  double const tipRadius = strength * mix(0.016, 0.020, growth);

  bool const inRow = place == BRACKET_IN_ROW;
  // The limits of a sum are close to the brackets around its summand.
  double const outer = mix(0.28, inRow ? 0.11 : 0.21, growth) * cell;
  double const tip = mix(0.80, inRow ? 1.04 : 0.94, growth) * cell;
  bool const open = side == BRACKET_OPEN;
  // A row has a gap before a closing bracket, but none after an opening one: each gets half of it.
  double const left = inRow ? x - 0.45 * double(size.metrics[0]) : x;
  double const middleX = open ? left + outer : left + cell - outer;
  double const tipX = open ? left + tip : left + cell - tip;
  double const reach = tipX - middleX;

  BrushC brush;
  brush.moveTo({tipX, top + tipRadius, tipRadius});
  brush.curveTo({tipX - 0.62 * reach, top + 0.27 * bend}, {middleX, top + 0.60 * bend},
                {middleX, top + bend, middleRadius});
  if (bend < half) brush.lineTo({middleX, bottom - bend, middleRadius});
  brush.curveTo({middleX, bottom - 0.60 * bend}, {tipX - 0.62 * reach, bottom - 0.27 * bend},
                {tipX, bottom - tipRadius, tipRadius});
  brush.finish(path);
}

}  // namespace zolt::surfaces
