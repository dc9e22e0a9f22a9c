#include "zolt/surfaces/typeset/typeset_graphics.h"

#include <algorithm>
#include <utility>

#include "zolt/surfaces/typeset/detail/brush.h"
#include "zolt/surfaces/typeset/detail/sign_shape.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {

namespace {

/// The distance of an exponent from the ink of its base, and the most that it is moved to get there: closer
/// to a base whose width was rounded up, away from one that leans over. Both are in surface units.
constexpr double exponent_distance = 0.25, most_closer = 1.25, most_away = 1;

/// A line runs through the centres of the units at its ends.
PathPointS cellCentre(long x, long y) { return {double(x) + 0.5, double(y) + 0.5}; }

bool sameRun(PlacedGlyphS const& a, PlacedGlyphS const& b) {
  return b.shape == SHAPE_GLYPH && a.face == b.face && a.em == b.em && a.rise == b.rise;
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

struct TypesetGraphicsABC::StateS {
  explicit StateS(oss::PointerTC<TypesetterC> shared) : typesetter(shared) {}

  FontSizeS const& size() const { return getFontSize(depth); }

  /// Letters may reach out of their advance, but by no more than their size.
  bool isInSight(double left, PlacedGlyphS const& glyph) const {
    return !clipBox || (left + glyph.x + glyph.width + glyph.em >= double(clipBox->left) &&
                        left + glyph.x - glyph.em <= double(clipBox->right));
  }

  oss::PointerTC<TypesetterC> typesetter;
  unsigned long depth = 0;
  std::optional<math::ved::RectangleS> clipBox;
  double exponentKern = 0;           // how far an exponent on the text just drawn moves to the left
  std::vector<PlacedGlyphS> glyphs;  // kept for their memory
  PathC path;
};

TypesetGraphicsABC::TypesetGraphicsABC(oss::PointerTC<TypesetterC> typesetter)
    : state_(std::make_unique<StateS>(typesetter)) {}
TypesetGraphicsABC::~TypesetGraphicsABC() = default;

TypesetterC& TypesetGraphicsABC::getTypesetter() const { return *state_->typesetter; }

void TypesetGraphicsABC::showOnly(std::optional<math::ved::RectangleS> const& box) { state_->clipBox = box; }

std::optional<math::ved::RectangleS> TypesetGraphicsABC::getClipBox() const { return state_->clipBox; }

void TypesetGraphicsABC::getTextExtent(oss::wstring const& text, long& width, long& height,
                                       long& midHeight) const {
  width = getTextWidth(text);
  height = state_->size().height;
  midHeight = state_->size().midHeight;
}

long TypesetGraphicsABC::getTextWidth(oss::wstring const& text) const {
  return state_->typesetter->measure(text, state_->depth);
}

long TypesetGraphicsABC::getTextHeight(oss::wstring const&) const { return state_->size().height; }
long TypesetGraphicsABC::getTextMidHeight(oss::wstring const&) const { return state_->size().midHeight; }

long TypesetGraphicsABC::getMetric(long index) const {
  return index >= 0 && index < 4 ? state_->size().metrics[index] : 0;
}

void TypesetGraphicsABC::drawText(oss::wstring const& text, long x, long y) const {
  drawTextAs(math::ved::TEXT_STARTS_ROW, text, x, y);
}

void TypesetGraphicsABC::drawTextAs(math::ved::TextRoleE role, oss::wstring const& text, long x,
                                    long y) const {
  using namespace math::ved;
  double const kern = std::exchange(state_->exponentKern, 0);
  if (text.empty()) return;
  FontSizeS const& size = state_->size();
  std::vector<PlacedGlyphS>& glyphs = state_->glyphs;
  state_->typesetter->place(text, state_->depth, role, glyphs);
  bool const isExponent =
      role == TEXT_STARTS_EXPONENT || role == TEXT_IS_UNIT || role == TEXT_IS_EXPONENT_SLOT;
  double const left = double(x) - (isExponent ? kern : 0), baseline = double(y) + size.baseline;
  if (role == TEXT_IS_SLOT || role == TEXT_IS_EXPONENT_SLOT) {
    return fillSlot(left, double(y), glyphs.front().width);
  }
  for (std::size_t i = 0; i < glyphs.size();) {
    PlacedGlyphS const& first = glyphs[i];
    std::size_t end = i + 1;
    if (first.shape == SHAPE_MISSING) {
      strokePath(makeMissingBox(left + first.x, baseline, first.width, first.em), getRuleThickness(size),
                 INK_TEXT);
    } else if (state_->isInSight(left, first)) {
      while (end < glyphs.size() && sameRun(first, glyphs[end]) && state_->isInSight(left, glyphs[end]))
        ++end;
      fillGlyphs({first.face, first.em, left, baseline - first.rise, &first, end - i});
    }
    i = end;
  }
  PlacedGlyphS const& last = glyphs.back();
  if (last.shape != SHAPE_GLYPH) return;
  double const room = double(getTextWidth(text) + size.metrics[0]) - (last.x + last.width + last.overhang);
  state_->exponentKern = std::clamp(room - exponent_distance, -most_away, most_closer);
}

void TypesetGraphicsABC::fillSlot(double x, double y, double width) const {
  FontSizeS const& size = state_->size();
  double const side = 0.04 * size.em, inset = 0.08 * size.em;
  state_->path.clear();
  appendRoundedBox(state_->path, x + side, y + inset, width - 2 * side, double(size.height) - 2 * inset,
                   0.12 * size.em);
  fillPath(state_->path, INK_SLOT);
}

void TypesetGraphicsABC::drawSign(math::ved::SignE sign, long x, long y, long width, long height) const {
  PathC& path = state_->path;
  path.clear();
  switch (sign) {
    case math::ved::SIGN_RADICAL:
    case math::ved::SIGN_INDEXED_RADICAL: {
      long const tick = getTickSize(sign);
      appendRadical(path, double(x), double(y), double(height), double(tick),
                    sign == math::ved::SIGN_INDEXED_RADICAL, state_->size());
      drawHorizontalLine(x + tick, y, width - tick);
      break;
    }
    case math::ved::SIGN_INTEGRAL:
      appendIntegral(path, double(x), double(y), double(width), double(height));
      break;
    case math::ved::SIGN_SUM:
      appendSum(path, double(x), double(y), double(width), double(height));
      break;
    default:
      return GraphicsABC::drawSign(sign, x, y, width, height);
  }
  fillPath(path, INK_TEXT);
}

void TypesetGraphicsABC::drawLine(long x1, long y1, long x2, long y2) const {
  state_->path.clear();
  state_->path.moveTo(cellCentre(x1, y1));
  state_->path.lineTo(cellCentre(x2, y2));
  strokePath(state_->path, getRuleThickness(state_->size()), INK_TEXT);
}

void TypesetGraphicsABC::drawHorizontalLine(long x, long y, long length) const {
  if (length > 0) fillBar(x, y, x + length - 1, y);
}

void TypesetGraphicsABC::drawVerticalLine(long x, long y, long length) const {
  if (length > 0) fillBar(x, y, x, y + length - 1);
}

void TypesetGraphicsABC::fillBar(long x1, long y1, long x2, long y2) const {
  PathPointS const from = cellCentre(x1, y1), to = cellCentre(x2, y2);
  fillRule({from.x, from.y, to.x, to.y, getRuleThickness(state_->size())}, INK_TEXT);
}

void TypesetGraphicsABC::drawOpenBracket(long x, long y, long height, bool automatic) const {
  fillBracket(BRACKET_OPEN, BRACKET_IN_ROW, x, y, height, automatic ? INK_SUPPLIED : INK_TEXT);
}

void TypesetGraphicsABC::drawCloseBracket(long x, long y, long height, bool automatic) const {
  fillBracket(BRACKET_CLOSE, BRACKET_IN_ROW, x - getMetric(1), y, height,
              automatic ? INK_SUPPLIED : INK_TEXT);
}

void TypesetGraphicsABC::drawBracketPair(long x, long y, long width, long height, bool) const {
  long const cell = getMetric(1), top = y - getMetric(2), full = height + 2 * getMetric(2);
  fillBracket(BRACKET_OPEN, BRACKET_AROUND_BOX, x - cell, top, full, INK_TEXT);
  fillBracket(BRACKET_CLOSE, BRACKET_AROUND_BOX, x + width, top, full, INK_TEXT);
}

void TypesetGraphicsABC::fillBracket(BracketSideE side, BracketPlaceE place, long left, long top, long height,
                                     InkE ink) const {
  state_->path.clear();
  appendBracket(state_->path, side, place, double(left), double(top), double(height), state_->size());
  if (!state_->path.getSteps().empty()) fillPath(state_->path, ink);
}

void TypesetGraphicsABC::selectFont(unsigned long fontDepth) const { state_->depth = fontDepth; }

}  // namespace zolt::surfaces
