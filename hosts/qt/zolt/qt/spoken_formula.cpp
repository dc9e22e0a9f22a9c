#include "zolt/qt/spoken_formula.h"

#include <algorithm>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::qt {

namespace {

unsigned long toOffset(int offset) { return static_cast<unsigned long>(std::max(0, offset)); }

}  // namespace

QString SpokenFormula::announcement() const { return edit_.state_->announced; }

SpokenFormula::Offsets SpokenFormula::caretOffsets() const {
  math::ved::ViewZNT4C const& view = edit_.state_->field->crefView();
  field::ReadableTextS const text = edit_.state_->readableText();
  auto const [anchor, caret] = view.getSelection();
  return {int(text.offsetOf(anchor ? anchor : caret)), int(text.offsetOf(caret))};
}

SpokenFormula::Offsets SpokenFormula::stepAt(int offset) const {
  field::ReadableTextS const text = edit_.state_->readableText();
  math::ved::PlaceS const begin = text.placeAt(toOffset(offset)), end = text.placeAfter(toOffset(offset));
  return {int(text.offsetOf(begin)), int(end ? text.offsetOf(end) : text.text.size())};
}

void SpokenFormula::select(int anchor, int caret) {
  field::ReadableTextS const text = edit_.state_->readableText();
  // What is between two words belongs to the first, so that a stretch takes in the words that it ends in.
  auto const endAt = [&](int offset) {
    math::ved::PlaceS const place = offset > 0 ? text.placeAfter(toOffset(offset - 1)) : math::ved::PlaceS();
    return place ? place : text.placeAt(toOffset(offset));
  };
  math::ved::PlaceS const from = anchor <= caret ? text.placeAt(toOffset(anchor)) : endAt(anchor);
  math::ved::PlaceS const to = anchor < caret ? endAt(caret) : text.placeAt(toOffset(caret));
  edit_.state_->act([&] { return edit_.state_->field->setSelection({from, to}); });
}

QRect SpokenFormula::characterRectangle(int offset) const {
  field::ReadableTextS const text = edit_.state_->readableText();
  math::ved::PlaceS const begin = text.placeAt(toOffset(offset)), end = text.placeAfter(toOffset(offset));
  bool const inRow = end && end.node->getParent() == begin.node->getParent();
  return edit_.state_->toPixels(edit_.state_->field->crefView().getRectangle({begin, inRow ? end : begin}));
}

int SpokenFormula::offsetNear(QPoint pos) const {
  math::ved::PlaceS const place = edit_.state_->placeNear(pos);
  return int(edit_.state_->readableText().offsetOf(place));
}

void SpokenFormula::reveal(int offset) {
  field::ReadableTextS const text = edit_.state_->readableText();
  math::ved::PlaceS const place = text.placeAt(toOffset(offset));
  edit_.state_->reveal(edit_.state_->field->crefView().getRectangle({place, place}));
  edit_.update();
}

}  // namespace zolt::qt
