#include <algorithm>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"
#include "zolt/ved/tree/node4.h"

// These members find places of the caret by position and by offset, without moving it.

namespace zolt::qt {

namespace {

unsigned long toOffset(int offset) { return static_cast<unsigned long>(std::max(0, offset)); }

}  // namespace

math::ved::PlaceS FormulaEdit::StateS::placeNear(QPointF pos) {
  QPoint const units = toUnits(pos);
  return field->findPlace(units.x(), units.y());
}

QString FormulaEdit::readableText() const {
  return toQString(field::makeReadableText(state_->field->crefView()).text);
}

FormulaEdit::CaretOffsets FormulaEdit::caretOffsets() const {
  math::ved::ViewZNT4C const& view = state_->field->crefView();
  field::ReadableTextS const text = field::makeReadableText(view);
  auto const [anchor, caret] = view.getSelection();
  return {int(text.offsetOf(anchor ? anchor : caret)), int(text.offsetOf(caret))};
}

void FormulaEdit::selectOffsets(int anchor, int caret) {
  field::ReadableTextS const text = field::makeReadableText(state_->field->crefView());
  math::ved::PlaceS const from = text.placeAt(toOffset(anchor)), to = text.placeAt(toOffset(caret));
  state_->act([&] { return state_->field->setSelection({from, to}); });
}

QRect FormulaEdit::placeRectangle(int offset) const {
  field::ReadableTextS const text = field::makeReadableText(state_->field->crefView());
  math::ved::PlaceS const place = text.placeAt(toOffset(offset));
  return state_->toPixels(state_->field->crefView().getRectangle({place, place}));
}

QRect FormulaEdit::characterRectangle(int offset) const {
  field::ReadableTextS const text = field::makeReadableText(state_->field->crefView());
  math::ved::PlaceS const begin = text.placeAt(toOffset(offset)), end = text.placeAfter(toOffset(offset));
  bool const inRow = end && end.node->getParent() == begin.node->getParent();
  return state_->toPixels(state_->field->crefView().getRectangle({begin, inRow ? end : begin}));
}

int FormulaEdit::offsetNear(QPoint pos) const {
  math::ved::PlaceS const place = state_->placeNear(pos);
  return int(field::makeReadableText(state_->field->crefView()).offsetOf(place));
}

void FormulaEdit::revealOffset(int offset) {
  field::ReadableTextS const text = field::makeReadableText(state_->field->crefView());
  math::ved::PlaceS const place = text.placeAt(toOffset(offset));
  state_->reveal(state_->field->crefView().getRectangle({place, place}));
  update();
}

}  // namespace zolt::qt
