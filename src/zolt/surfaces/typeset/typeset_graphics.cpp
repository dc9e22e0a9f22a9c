#include "zolt/surfaces/typeset/typeset_graphics.h"

#include <algorithm>
#include <limits>

#include "zolt/surfaces/typeset/detail/brush.h"
#include "zolt/surfaces/typeset/detail/row_context.h"
#include "zolt/surfaces/typeset/detail/sign_shape.h"
#include "zolt/surfaces/typeset/detail/stroke_joiner.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {

namespace {

/// How far an exponent stands from the ink of its base, and by how much it is moved for that at most: closer
/// to a base whose width was rounded up, away from one that leans over. In surface units.
constexpr double exponent_distance = 0.25, most_closer = 1.25, most_away = 1;

/// So far out neither ink that leans over nor what a text stands beside makes a difference. In surface units.
constexpr double far_out = 100;
constexpr double widest_letter = 4;  // in em
constexpr double everything = std::numeric_limits<double>::infinity();

PathPointS cellCentre(PathPointS cell) { return {cell.x + 0.5, cell.y + 0.5}; }

bool sameRun(PlacedGlyphS const& a, PlacedGlyphS const& b) {
  return b.shape == SHAPE_GLYPH && a.face == b.face && a.em == b.em && a.rise == b.rise;
}

/// The hollow box that stands for a character without a glyph.
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

  bool isFarOut(double left, double top, double right, double bottom) const {
    return right < shownFrom.x || left > shownTo.x || bottom < shownFrom.y || top > shownTo.y;
  }

  oss::PointerTC<TypesetterC> typesetter;
  unsigned long depth = 0;
  PathPointS shownFrom{-everything, -everything}, shownTo{everything, everything};
  StrokeJoinerC strokes;
  RowContextC row;
  std::vector<PlacedGlyphS> glyphs;  // kept for their memory
  PathC path;
};

TypesetGraphicsABC::TypesetGraphicsABC(oss::PointerTC<TypesetterC> typesetter)
    : state_(std::make_unique<StateS>(typesetter)) {}
TypesetGraphicsABC::~TypesetGraphicsABC() = default;

TypesetterC& TypesetGraphicsABC::getTypesetter() const { return *state_->typesetter; }

void TypesetGraphicsABC::showOnly(PathPointS topLeft, PathPointS bottomRight) {
  state_->shownFrom = {topLeft.x - far_out, topLeft.y - far_out};
  state_->shownTo = {bottomRight.x + far_out, bottomRight.y + far_out};
}

void TypesetGraphicsABC::showAll() { showOnly({-everything, -everything}, {everything, everything}); }

void TypesetGraphicsABC::finish() const {
  paintStrokes();
  state_->row.clear();
}

void TypesetGraphicsABC::paintStrokes() const {
  FontSizeS const& size = state_->size();
  double const thickness = getRuleThickness(size);
  for (ChainS const& chain : state_->strokes.getChains()) {
    SignS sign;
    if (recogniseSign(chain, size, sign)) {
      fillPath(sign.outline, INK_TEXT);
      if (sign.hasBar) fillRule(sign.bar, INK_TEXT);
      continue;
    }
    if (chain.crisp) {
      for (std::size_t i = 1; i < chain.points.size(); ++i) {
        PathPointS const from = cellCentre(chain.points[i - 1]), to = cellCentre(chain.points[i]);
        fillRule({from.x, from.y, to.x, to.y, thickness}, INK_TEXT);
      }
      continue;
    }
    state_->path.clear();
    state_->path.moveTo(cellCentre(chain.points.front()));
    for (std::size_t i = 1; i < chain.points.size(); ++i) state_->path.lineTo(cellCentre(chain.points[i]));
    strokePath(state_->path, thickness, INK_TEXT);
  }
  state_->strokes.clear();
}

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
  paintStrokes();
  if (text.empty()) return;
  FontSizeS const& size = state_->size();
  double const longest = widest_letter * size.em * double(text.size());
  if (state_->isFarOut(double(x), double(y), double(x) + longest, double(y + size.height))) return;
  std::vector<PlacedGlyphS>& glyphs = state_->glyphs;
  TextStartE const start = state_->row.findStart(x, y, size.height, state_->depth);
  state_->typesetter->place(text, state_->depth, start, glyphs);
  double const left = double(x) - state_->row.findKern(x, y + size.height, state_->depth), top = double(y),
               baseline = top + size.baseline;
  for (std::size_t i = 0; i < glyphs.size();) {
    PlacedGlyphS const& first = glyphs[i];
    std::size_t end = i + 1;
    switch (first.shape) {
      case SHAPE_GLYPH:
        while (end < glyphs.size() && sameRun(first, glyphs[end])) ++end;
        fillGlyphs({first.face, first.em, left, baseline - first.rise, &first, end - i});
        break;
      case SHAPE_SLOT:
        state_->path.clear();
        appendRoundedBox(state_->path, left + first.x + 0.04 * first.em, top + 0.08 * first.em,
                         first.width - 0.08 * first.em, double(size.height) - 0.16 * first.em,
                         0.12 * first.em);
        fillPath(state_->path, INK_SLOT);
        break;
      case SHAPE_MISSING:
        strokePath(makeMissingBox(left + first.x, baseline, first.width, first.em), getRuleThickness(size),
                   INK_TEXT);
        break;
    }
    i = end;
  }
  PlacedGlyphS const& last = glyphs.back();
  long const next = x + getTextWidth(text) + size.metrics[0];
  double const room = double(next - x) - (last.x + last.width + last.overhang);
  double const kern =
      last.shape == SHAPE_GLYPH ? std::clamp(room - exponent_distance, -most_away, most_closer) : 0;
  state_->row.add({PieceS::KIND_TEXT, next, y, y + size.height, state_->depth, kern});
}

void TypesetGraphicsABC::drawLine(long x1, long y1, long x2, long y2) const {
  state_->strokes.add({double(x1), double(y1)}, {double(x2), double(y2)});
}

void TypesetGraphicsABC::drawHorizontalLine(long x, long y, long length) const {
  if (length <= 0) return;
  state_->strokes.add({double(x), double(y)}, {double(x) + double(length - 1), double(y)});
  state_->row.add({PieceS::KIND_BAR, x + length + getMetric(0), y, y + 1, state_->depth, 0});
}

void TypesetGraphicsABC::drawVerticalLine(long x, long y, long length) const {
  if (length <= 0) return;
  state_->strokes.add({double(x), double(y)}, {double(x), double(y) + double(length - 1)});
  state_->row.add({PieceS::KIND_BAR, x + 1 + getMetric(0), y, y + length, state_->depth, 0});
}

void TypesetGraphicsABC::drawOpenBracket(long x, long y, long height, bool automatic) const {
  fillBracket(BRACKET_OPEN, BRACKET_IN_ROW, x, y, height, automatic ? INK_SUPPLIED : INK_TEXT);
}

void TypesetGraphicsABC::drawCloseBracket(long x, long y, long height, bool automatic) const {
  fillBracket(BRACKET_CLOSE, BRACKET_IN_ROW, x - getMetric(1), y, height,
              automatic ? INK_SUPPLIED : INK_TEXT);
  state_->row.add({PieceS::KIND_BRACKET, x, y, y + height, state_->depth, 0});
}

void TypesetGraphicsABC::drawBracketPair(long x, long y, long width, long height, bool) const {
  long const cell = getMetric(1), top = y - getMetric(2), full = height + 2 * getMetric(2);
  fillBracket(BRACKET_OPEN, BRACKET_AROUND_BOX, x - cell, top, full, INK_TEXT);
  fillBracket(BRACKET_CLOSE, BRACKET_AROUND_BOX, x + width, top, full, INK_TEXT);
  long const next = x + width + cell + getMetric(0);
  state_->row.add({PieceS::KIND_BRACKET, next, top, top + full, state_->depth, 0});
}

void TypesetGraphicsABC::fillBracket(BracketSideE side, BracketPlaceE place, long left, long top, long height,
                                     InkE ink) const {
  paintStrokes();
  if (state_->isFarOut(double(left), double(top), double(left), double(top + height))) return;
  state_->path.clear();
  appendBracket(state_->path, side, place, double(left), double(top), double(height), state_->size());
  if (!state_->path.getSteps().empty()) fillPath(state_->path, ink);
}

void TypesetGraphicsABC::selectFont(unsigned long fontDepth) const {
  paintStrokes();
  state_->depth = fontDepth;
}

}  // namespace zolt::surfaces
