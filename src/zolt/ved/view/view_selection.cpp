#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::isSelected() const {
  takeBackIfDue();
  if (!selection_.anchor) return false;
  if (selection_.anchor != selection_.caret) return true;
  if (!penDown_) selection_.anchor = {};
  return false;
}

SelectionS ViewZNT4C::getSelection() const {
  return isSelected() ? selection_ : SelectionS{{}, selection_.caret};
}

bool ViewZNT4C::getSelectionBounds(Node4C*& line, unsigned long& first, unsigned int& firstPos,
                                   unsigned long& last, unsigned int& lastPos) const {
  if (!isSelected()) return false;
  auto const [start, end] = spanOf(selection_);
  line = start.node->getParent();
  first = start.node->findChildNumber();
  firstPos = start.pos;
  last = end.node->findChildNumber();
  lastPos = end.pos;
  return true;
}

// ---- The caret ------------------------------------------------------------------------------------------

bool ViewZNT4C::moveCaret(CaretStepE step) {
  PlaceS& caret = selection_.caret;
  bool const isLeft = step == STEP_LEFT;
  if (caret != (isLeft ? startOf(caret.node) : endOf(caret.node))) {
    isLeft ? --caret.pos : ++caret.pos;
    return true;
  }
  Node4C const* const text = isLeft ? previousText(*caret.node) : nextText(*caret.node);
  if (text) caret = isLeft ? endOf(text) : startOf(text);
  return text != nullptr;
}

bool ViewZNT4C::runCaretKey(CaretStepE step, bool shift) {
  bool const selected = isSelected();
  if (shift != selected) selection_.anchor = shift ? selection_.caret : PlaceS();
  bool const moved = moveCaret(step);
  return (moved || (selected && !shift)) && needRedraw();
}

}  // namespace zolt::math::ved
