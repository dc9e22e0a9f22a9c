#include "zolt/surfaces/typeset/typeset_graphics.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "zolt/common/signs.h"
#include "zolt/surfaces/typeset/detail/brush.h"
#include "zolt/surfaces/typeset/detail/sign_shape.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {

namespace {

/// The distance of an exponent from the ink of its base, and the most that it is moved to get there: closer
/// to a base whose width was rounded up, away from one that leans over. Both are in surface units.
constexpr double exponent_distance = 0.25, most_closer = 1.25, most_away = 1;

/// How far an opening bracket, bar or radical moves to a prefix after it: a share of the blank there, and at
/// most so many surface units.
constexpr double closer_share = 0.6, most_closer_to_prefix = 2.4;

/// The bars of floors and ceilings are that far inside their boxes, which leaves a serif's length beside the
/// content, and the outer bars of norms so far that they are a pair; all bars end that far from the top and
/// the bottom, as brackets do. In surface units.
constexpr double bar_inset = 1.9, bar_serif = 2.3, outer_bar_inset = 0.6, bar_end = 1.25;

/// A line runs through the centres of the units at its ends.
PathPointS cellCentre(long x, long y) { return {double(x) + 0.5, double(y) + 0.5}; }

/// The room above the ink of a letter without an ascender, and of any other one, in its box. In em.
constexpr double low_letter_room = 0.27, high_letter_room = 0.05;

bool isLowLetter(char16_t c) {
  constexpr std::u16string_view low = u"acegmnopqrsuvwxyzαγεηικμνοπρστυφχψω";
  return low.find(c) != low.npos;
}

bool sameRun(PlacedGlyphS const& a, PlacedGlyphS const& b) {
  return b.shape == SHAPE_GLYPH && a.face == b.face && a.em == b.em && a.rise == b.rise;
}

/// A "d" is close to its variable, whatever room was measured between the two.
double differentialShift(math::ved::TextRoleE role, FontSizeS const& size) {
  constexpr double distance = 0.25, lower_room = 2;
  return role == math::ved::TEXT_IS_INTEGRAL_D ? double(size.metrics[0]) - distance
         : role == math::ved::TEXT_IS_LOWER_D  ? lower_room - distance
                                               : 0;
}

/// Appends the hollow box that replaces a character without a glyph.
PathC makeMissingBox(double left, double baseline, double width, double em) {
  double const side = 0.08 * em, top = baseline - 0.62 * em;
  PathC path;
  path.moveTo({left + side, top});
  path.lineTo({left + width - side, top});
  path.lineTo({left + width - side, baseline});
  path.lineTo({left + side, baseline});
  path.close();
  return path;
}

}  // namespace

TypesetGraphicsABC::TypesetGraphicsABC(oss::PointerTC<TypesetterC> typesetter)
    : typesetter_(std::move(typesetter)) {}
TypesetGraphicsABC::~TypesetGraphicsABC() = default;

FontSizeS const& TypesetGraphicsABC::fontSize() const { return getFontSize(depth_); }

// Letters may reach out of their advance, but by no more than their size.
bool TypesetGraphicsABC::isInSight(double left, PlacedGlyphS const& glyph) const {
  return !clipBox_ || (left + glyph.x + glyph.width + glyph.em >= double(clipBox_->left) &&
                       left + glyph.x - glyph.em <= double(clipBox_->right));
}

void TypesetGraphicsABC::getTextExtent(oss::wstring const& text, long& width, long& height,
                                       long& midHeight) const {
  width = getTextWidth(text);
  height = getTextHeight(text);
  midHeight = fontSize().midHeight;
}

long TypesetGraphicsABC::getTextWidth(oss::wstring const& text) const {
  return typesetter_->measure(text, depth_);
}

long TypesetGraphicsABC::getTextHeight(oss::wstring const& text) const {
  // Only the boxes of the normal size have room for an index.
  bool const isLower = depth_ > 0 && typesetter_->hasIndex(text);
  return fontSize().height + (isLower ? 1 : 0);
}

long TypesetGraphicsABC::getIndexWidth(oss::wstring const& text) const {
  return typesetter_->measureIndex(text, depth_);
}

long TypesetGraphicsABC::getTextMidHeight(oss::wstring const&) const { return fontSize().midHeight; }

long TypesetGraphicsABC::getMetric(long index) const {
  return index >= 0 && index < 4 ? fontSize().metrics[index] : 0;
}

void TypesetGraphicsABC::drawText(oss::wstring const& text, long x, long y) const {
  drawTextAs(math::ved::TEXT_STARTS_ROW, text, x, y);
}

void TypesetGraphicsABC::drawTextAs(math::ved::TextRoleE role, oss::wstring const& text, long x,
                                    long y) const {
  using namespace math::ved;
  double const kern = std::exchange(exponentKern_, 0);
  if (text.empty()) return;
  enclosed_.clear();
  FontSizeS const& size = fontSize();
  auto const placed = typesetter_->place(text, depth_, role);
  std::vector<PlacedGlyphS> const& glyphs = placed->glyphs;
  bool const isExponent =
      role == TEXT_STARTS_EXPONENT || role == TEXT_IS_UNIT || role == TEXT_IS_EXPONENT_SLOT;
  double const left = double(x) - (isExponent ? kern : 0) + differentialShift(role, size),
               baseline = double(y) + size.baseline;
  if (role == TEXT_IS_SLOT || role == TEXT_IS_EXPONENT_SLOT) {
    return fillSlot(left, double(y), glyphs.front().width);
  }
  for (std::size_t i = 0; i < glyphs.size();) {
    PlacedGlyphS const& first = glyphs[i];
    std::size_t end = i + 1;
    if (first.shape == SHAPE_MISSING) {
      strokePath(makeMissingBox(left + first.x, baseline, first.width, first.em), getRuleThickness(size),
                 INK_TEXT);
    } else if (isInSight(left, first)) {
      while (end < glyphs.size() && sameRun(first, glyphs[end]) && isInSight(left, glyphs[end])) ++end;
      fillGlyphs({first.face, first.em, left, baseline - first.rise, &first, end - i});
    }
    i = end;
  }
  // An exponent above an index is on the letter before that.
  auto last = glyphs.rbegin();
  while (last != glyphs.rend() && last->rise < 0) ++last;
  if (last == glyphs.rend() || last->shape != SHAPE_GLYPH) return;
  long const index = last == glyphs.rbegin() ? 0 : placed->indexWidth;
  double const room =
      double(placed->width - index + size.metrics[0]) - (last->x + last->width + last->overhang);
  exponentKern_ = std::clamp(room - exponent_distance, -most_away, most_closer);
}

void TypesetGraphicsABC::fillSlot(double x, double y, double width) const {
  FontSizeS const& size = fontSize();
  double const side = 0.04 * size.em, inset = 0.08 * size.em;
  path_.clear();
  appendRoundedBox(path_, x + side, y + inset, width - 2 * side, double(size.height) - 2 * inset,
                   0.12 * size.em);
  fillPath(path_, INK_SLOT);
}

void TypesetGraphicsABC::drawSign(math::ved::SignE sign, long x, long y, long width, long height) const {
  double const closer = takeCloser(), lower = takeLower();
  switch (sign) {
    case math::ved::SIGN_RADICAL:
    case math::ved::SIGN_INDEXED_RADICAL: {
      double const tick = double(getTickSize(sign)) + closer;
      fillBar({double(x) + tick + 0.5, double(y) + 0.5}, cellCentre(x + width - 1, y));
      return fillOutline({sign, 0, height, tick, depth_}, x, y, INK_TEXT);
    }
    case math::ved::SIGN_HAT:
    case math::ved::SIGN_ARROW:
    case math::ved::SIGN_DOT:
      return fillOutline({sign, width, height, lower, depth_}, x, y, INK_TEXT);
    case math::ved::SIGN_INTEGRAL:
    case math::ved::SIGN_SUM:
    case math::ved::SIGN_PRODUCT:
    case math::ved::SIGN_OPEN_SQUARE:
    case math::ved::SIGN_CLOSE_SQUARE:
    case math::ved::SIGN_OPEN_BRACE:
    case math::ved::SIGN_CLOSE_BRACE:
      return fillOutline({sign, width, height, 0, depth_}, x, y, INK_TEXT);
    case math::ved::SIGN_NORM_BARS:
      fillBars(sign, x, y, width, height, closer);
      return fillBars(math::ved::SIGN_ABSOLUTE_BARS, x + norm_bar_distance, y, width - 2 * norm_bar_distance,
                      height, closer);
    default:
      return fillBars(sign, x, y, width, height, closer);
  }
}

void TypesetGraphicsABC::fillOutline(OutlineS const& outline, long x, long y, InkE ink) const {
  path_.clear();
  appendOutline(path_, outline, double(x), double(y));
  if (!path_.getSteps().empty()) fillPath(path_, ink);
}

void TypesetGraphicsABC::drawLine(long x1, long y1, long x2, long y2) const {
  path_.clear();
  path_.moveTo(cellCentre(x1, y1));
  path_.lineTo(cellCentre(x2, y2));
  strokePath(path_, getRuleThickness(fontSize()), INK_TEXT);
}

void TypesetGraphicsABC::drawStroke(math::ved::StrokeE kind,
                                    std::vector<math::ved::PointS> const& points) const {
  if (points.size() < 2) return;
  // A point before the first and one after the last stand for the neighbours that these do not have.
  auto const at = [&](std::size_t i) {
    auto const& point = points[std::clamp<std::size_t>(i, 1, points.size()) - 1];
    return cellCentre(point.x, point.y);
  };
  // A third of the way to the next point, along the line from the point before to the one after.
  auto const control = [](PathPointS p, PathPointS from, PathPointS to) {
    return PathPointS{p.x + (to.x - from.x) / 6, p.y + (to.y - from.y) / 6};
  };
  path_.clear();
  path_.moveTo(at(1));
  for (std::size_t i = 2; i <= points.size(); ++i) {
    if (kind == math::ved::STROKE_WITH_CORNERS) {
      path_.lineTo(at(i));
    } else {
      path_.curveTo(control(at(i - 1), at(i - 2), at(i)), control(at(i), at(i + 1), at(i - 1)), at(i));
    }
  }
  strokePath(path_, getRuleThickness(fontSize()), INK_TEXT);
}

void TypesetGraphicsABC::drawHorizontalLine(long x, long y, long length) const {
  double const closer = takeCloser(), height = double(y) + 0.5 + takeLower();
  if (length > 0) fillBar({double(x) + 0.5 + closer, height}, {double(x + length) - 0.5, height});
}

void TypesetGraphicsABC::drawVerticalLine(long x, long y, long length) const {
  if (length > 0) fillBar(cellCentre(x, y), cellCentre(x, y + length - 1));
}

void TypesetGraphicsABC::fillBar(PathPointS from, PathPointS to) const {
  fillRule({from.x, from.y, to.x, to.y, getRuleThickness(fontSize())}, INK_TEXT);
}

void TypesetGraphicsABC::fillBars(math::ved::SignE sign, long x, long y, long width, long height,
                                  double closer) const {
  bool const serifs = sign == math::ved::SIGN_CEILING_BARS || sign == math::ved::SIGN_FLOOR_BARS;
  double const inset = 0.5 + (serifs ? bar_inset : sign == math::ved::SIGN_NORM_BARS ? outer_bar_inset : 0);
  double const left = double(x) + inset + closer, right = double(x + width) - inset;
  double const top = double(y) + 0.5 + bar_end, bottom = double(y + height) - 0.5 - bar_end;
  fillBar({left, top}, {left, bottom});
  fillBar({right, top}, {right, bottom});
  if (!serifs) return;
  double const end = sign == math::ved::SIGN_CEILING_BARS ? top : bottom;
  fillBar({left, end}, {left + bar_serif, end});
  fillBar({right - bar_serif, end}, {right, end});
}

/// How far the sign that is drawn now moves to what it encloses.
double TypesetGraphicsABC::takeCloser() const {
  double const room = typesetter_->findPrefixRoom(enclosed_, depth_);
  enclosed_.clear();
  return std::min(closer_share * room, most_closer_to_prefix);
}

/// How far the sign that is drawn now comes down to what it is above.
double TypesetGraphicsABC::takeLower() const {
  bool const isShort = !covered_.empty() && covered_.size() < most_covered;
  bool const isLow = isShort && std::all_of(covered_.begin(), covered_.end(), isLowLetter);
  bool const isHigh = isShort && !isLow;
  covered_.clear();
  return (isLow ? low_letter_room : isHigh ? high_letter_room : 0) * fontSize().em;
}

void TypesetGraphicsABC::drawOpenBracket(long x, long y, long height, bool automatic) const {
  fillOutline({OUTLINE_OPENS_IN_ROW, 0, height, takeCloser(), depth_}, x, y,
              automatic ? INK_SUPPLIED : INK_TEXT);
}

void TypesetGraphicsABC::drawCloseBracket(long x, long y, long height, bool automatic) const {
  fillOutline({OUTLINE_CLOSES_IN_ROW, 0, height, 0, depth_}, x - getMetric(1), y,
              automatic ? INK_SUPPLIED : INK_TEXT);
}

void TypesetGraphicsABC::drawBracketPair(long x, long y, long width, long height, bool) const {
  long const cell = getMetric(1), top = y - getMetric(2), full = height + 2 * getMetric(2);
  fillOutline({OUTLINE_OPENS_AROUND_BOX, 0, full, takeCloser(), depth_}, x - cell, top, INK_TEXT);
  fillOutline({OUTLINE_CLOSES_AROUND_BOX, 0, full, 0, depth_}, x + width, top, INK_TEXT);
}

}  // namespace zolt::surfaces
