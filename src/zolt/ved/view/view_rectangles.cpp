#include <algorithm>

#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

namespace {

/// Width of the first `count` characters of a text, or of all when there are fewer.
long measureStart(Node4C const& text, unsigned int count, GraphicsABC const& graphics) {
  text.selectFont(graphics);
  return graphics.getTextWidth(text.crefText().substr(0, count));
}

}  // namespace

RectangleS ViewZNT4C::getCaretRectangle() {
  if (!executing_) layoutIfPending();
  PointS const position = caretNode_->getAbsolutePosition();
  long const right = position.x + measureStart(*caretNode_, caretPos_, *graphics_);
  return {right - 1, position.y, right, position.y + caretNode_->getHeight()};
}

RectangleS ViewZNT4C::getCurrentNodeRectangle() {
  if (!isSelected()) return {};
  if (!executing_) layoutIfPending();
  Node4C* line = nullptr;
  unsigned long first = 0;
  unsigned long last = 0;
  unsigned int firstPos = 0;
  unsigned int lastPos = 0;
  if (!getSelectionBounds(line, first, firstPos, last, lastPos)) return {};

  PointS const position = line->getAbsolutePosition();
  Node4C const& firstItem = *line->child(first);
  Node4C const& lastItem = *line->child(last);
  RectangleS box;
  box.left = position.x + firstItem.getDX() - 1;
  if (firstItem.getType() == NODE4_TEXT) box.left += 1 + measureStart(firstItem, firstPos, *graphics_);
  box.right = position.x + lastItem.getDX();
  box.right += lastItem.getType() == NODE4_TEXT ? measureStart(lastItem, lastPos, *graphics_) + 1
                                                : lastItem.getWidth() - 1;
  box.top = line->getHeight();
  for (unsigned long i = first; i <= last; ++i) {
    Node4C const& item = *line->child(i);
    box.top = std::min(box.top, item.getDY());
    box.bottom = std::max(box.bottom, item.getDY() + item.getHeight());
  }
  box.top += position.y;
  box.bottom += position.y;
  return box;
}

}  // namespace zolt::math::ved
