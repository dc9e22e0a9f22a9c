#include <algorithm>

#include "zolt/ved/view/detail/selection_bounds.h"
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
  takeBackIfDue();
  return getRectangle({selection_.caret, selection_.caret});
}

RectangleS ViewZNT4C::getCurrentNodeRectangle() {
  return isSelected() ? getRectangle(selection_) : RectangleS();
}

RectangleS ViewZNT4C::getRectangle(SelectionS const& range) const {
  if (!executing_) layoutIfPending();
  if (range.anchor == range.caret) {
    auto const& [node, pos] = range.caret;
    PointS const position = node->getAbsolutePosition();
    long const right = position.x + measureStart(*node, pos, *graphics_);
    return {right - 1, position.y, right, position.y + node->getHeight()};
  }

  SelectionBoundsS const bounds(range);
  Node4C const& line = *bounds.line;
  PointS const position = line.getAbsolutePosition();
  Node4C const& firstItem = *line.child(bounds.first);
  Node4C const& lastItem = *line.child(bounds.last);
  RectangleS box;
  box.left = position.x + firstItem.getDX() - 1;
  if (firstItem.getType() == NODE4_TEXT) box.left += 1 + measureStart(firstItem, bounds.firstPos, *graphics_);
  box.right = position.x + lastItem.getDX();
  box.right += lastItem.getType() == NODE4_TEXT ? measureStart(lastItem, bounds.lastPos, *graphics_) + 1
                                                : lastItem.getWidth() - 1;
  box.top = line.getHeight();
  for (unsigned long i = bounds.first; i <= bounds.last; ++i) {
    Node4C const& item = *line.child(i);
    box.top = std::min(box.top, item.getDY());
    box.bottom = std::max(box.bottom, item.getDY() + item.getHeight());
  }
  box.top += position.y;
  box.bottom += position.y;
  return box;
}

}  // namespace zolt::math::ved
