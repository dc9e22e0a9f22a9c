#include "zolt/surfaces/typeset/typeset_graphics.h"

#include "zolt/surfaces/typeset/detail/brush.h"
#include "zolt/surfaces/typeset/detail/sign_shape.h"
#include "zolt/surfaces/typeset/detail/stroke_joiner.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {

namespace {

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

  oss::PointerTC<TypesetterC> typesetter;
  unsigned long depth = 0;
  StrokeJoinerC strokes;
  std::vector<PlacedGlyphS> glyphs;  // kept for their memory
  PathC path;
};

TypesetGraphicsABC::TypesetGraphicsABC(oss::PointerTC<TypesetterC> typesetter)
    : state_(std::make_unique<StateS>(typesetter)) {}
TypesetGraphicsABC::~TypesetGraphicsABC() = default;

TypesetterC& TypesetGraphicsABC::getTypesetter() const { return *state_->typesetter; }

void TypesetGraphicsABC::finish() const {
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
  finish();
  std::vector<PlacedGlyphS>& glyphs = state_->glyphs;
  state_->typesetter->place(text, state_->depth, glyphs);
  FontSizeS const& size = state_->size();
  double const left = double(x), top = double(y), baseline = top + size.baseline;
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
}

void TypesetGraphicsABC::drawLine(long x1, long y1, long x2, long y2) const {
  state_->strokes.add({double(x1), double(y1)}, {double(x2), double(y2)});
}

void TypesetGraphicsABC::drawHorizontalLine(long x, long y, long length) const {
  if (length > 0) state_->strokes.add({double(x), double(y)}, {double(x) + double(length - 1), double(y)});
}

void TypesetGraphicsABC::drawVerticalLine(long x, long y, long length) const {
  if (length > 0) state_->strokes.add({double(x), double(y)}, {double(x), double(y) + double(length - 1)});
}

void TypesetGraphicsABC::drawOpenBracket(long x, long y, long height, bool automatic) const {
  fillBracket(BRACKET_OPEN, BRACKET_IN_ROW, x, y, height, automatic);
}

void TypesetGraphicsABC::drawCloseBracket(long x, long y, long height, bool automatic) const {
  fillBracket(BRACKET_CLOSE, BRACKET_IN_ROW, x - getMetric(1), y, height, automatic);
}

void TypesetGraphicsABC::drawBracketPair(long x, long y, long width, long height, bool automatic) const {
  long const top = y - getMetric(2), full = height + 2 * getMetric(2);
  fillBracket(BRACKET_OPEN, BRACKET_AROUND_BOX, x - getMetric(1), top, full, automatic);
  fillBracket(BRACKET_CLOSE, BRACKET_AROUND_BOX, x + width, top, full, automatic);
}

void TypesetGraphicsABC::fillBracket(BracketSideE side, BracketPlaceE place, long left, long top, long height,
                                     bool automatic) const {
  finish();
  state_->path.clear();
  appendBracket(state_->path, side, place, double(left), double(top), double(height), state_->size());
  if (!state_->path.getSteps().empty()) fillPath(state_->path, automatic ? INK_SUPPLIED : INK_TEXT);
}

void TypesetGraphicsABC::selectFont(unsigned long fontDepth) const {
  finish();
  state_->depth = fontDepth;
}

}  // namespace zolt::surfaces
