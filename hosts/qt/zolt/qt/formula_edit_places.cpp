#include <algorithm>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"

// These members find places of the caret by position and by offset, without moving it.

namespace zolt::qt {

namespace {

/// Restores caret and selection after the view has been asked about other places. It uses the view's own
/// operations, since none of this is user input.
class KeptSelectionC {
 public:
  explicit KeptSelectionC(math::ved::ViewZNT4C& view) : view_(view), selection_(view.getSelection()) {}
  ~KeptSelectionC() { view_.selectRange(selection_); }
  KeptSelectionC(KeptSelectionC const&) = delete;
  KeptSelectionC& operator=(KeptSelectionC const&) = delete;

 private:
  math::ved::ViewZNT4C& view_;
  math::ved::SelectionS selection_;
};

unsigned long toOffset(int offset) { return static_cast<unsigned long>(std::max(0, offset)); }

}  // namespace

math::ved::PlaceS FormulaEdit::StateS::placeNear(QPointF pos, QRect* caret) {
  math::ved::ViewZNT4C& view = field->refView();
  KeptSelectionC const kept(view);
  QPoint const units = toUnits(pos);
  view.addEvent(math::ved::EVENT_PEN_DOWN, 0, false, false, false, units.x(), units.y());
  view.addEvent(math::ved::EVENT_PEN_UP, 0, false, false, false, 0, 0);
  if (caret) *caret = toPixels(view.getCaretRectangle());
  return view.getSelection().caret;
}

math::ved::RectangleS FormulaEdit::StateS::caretBoxAt(math::ved::PlaceS place) {
  math::ved::ViewZNT4C& view = field->refView();
  KeptSelectionC const kept(view);
  view.selectRange({{}, place});
  return view.getCaretRectangle();
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
  return state_->toPixels(state_->caretBoxAt(text.placeAt(toOffset(offset))));
}

int FormulaEdit::offsetNear(QPoint pos) const {
  math::ved::PlaceS const place = state_->placeNear(pos);
  return int(field::makeReadableText(state_->field->crefView()).offsetOf(place));
}

void FormulaEdit::revealOffset(int offset) {
  field::ReadableTextS const text = field::makeReadableText(state_->field->crefView());
  state_->reveal(state_->caretBoxAt(text.placeAt(toOffset(offset))));
  update();
}

}  // namespace zolt::qt
