#include <algorithm>

#include "zolt/ved/view/view_hold.h"

namespace zolt::math::ved {

bool ViewZNT4C::compose(wstring const& text, unsigned long caret) {
  if (isBusy() || held_ || grouping_ || !editable_) return bip();
  takeBackIfDue();
  endComposition();
  if (text.empty()) return true;
  composition_ = {selection_.caret, text, std::min<unsigned long>(caret, text.size())};
  refCaretNode().measureAgain();
  return needLayout();
}

void ViewZNT4C::endComposition() {
  if (!composition_.place) return;
  const_cast<Node4C*>(composition_.place.node)->measureAgain();
  composition_ = {};
  needLayout();
}

RectangleS ViewZNT4C::getComposedRectangle(unsigned long begin, unsigned long end) const {
  takeBackIfDue();
  PlaceS const place = composition_.place;
  if (!place) return getRectangle({selection_.caret, selection_.caret});
  RectangleS box = getRectangle({place, place});
  ViewHoldC const hold(*this);
  place.node->selectFont(*graphics_);
  auto const widthTo = [&](unsigned long count) {
    return graphics_->getComposedWidth(composition_.text.substr(0, count));
  };
  long const start = box.right;
  box.right = start + widthTo(end);
  box.left = begin < end ? start + widthTo(begin) : box.right - 1;
  return box;
}

// A place at the composed text is before it.
long ViewZNT4C::measureStart(PlaceS place) const {
  place.node->selectFont(*graphics_);
  bool const after = composition_.isIn(*place.node) && place.pos > composition_.place.pos;
  return measureShown(*place.node, after ? place.pos + composition_.text.size() : place.pos, composed(),
                      *graphics_);
}

}  // namespace zolt::math::ved
