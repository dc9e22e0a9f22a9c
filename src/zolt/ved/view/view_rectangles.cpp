#include <algorithm>

#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/view/view_hold.h"

namespace zolt::math::ved {

namespace {

/// The box around the cells of a block.
RectangleS boxOf(TableBlockS const& block) {
  PointS const at = block.table->getAbsolutePosition();
  RectangleS box;
  for (unsigned long row = block.firstRow; row <= block.lastRow; ++row) {
    for (unsigned long column = block.firstColumn; column <= block.lastColumn; ++column) {
      Node4C const& cell = *cellAt(*block.table, row, column);
      RectangleS const next{at.x + cell.getDX(), at.y + cell.getDY(), at.x + cell.getDX() + cell.getWidth(),
                            at.y + cell.getDY() + cell.getHeight()};
      bool const isFirst = row == block.firstRow && column == block.firstColumn;
      box = isFirst ? next
                    : RectangleS{std::min(box.left, next.left), std::min(box.top, next.top),
                                 std::max(box.right, next.right), std::max(box.bottom, next.bottom)};
    }
  }
  return box;
}

}  // namespace

RectangleS ViewZNT4C::getCaretRectangle() {
  return getComposedRectangle(composition_.caret, composition_.caret);
}

RectangleS ViewZNT4C::getCurrentNodeRectangle() {
  return isSelected() ? getRectangle(selection_) : RectangleS();
}

RectangleS ViewZNT4C::getRectangle(SelectionS const& range) const {
  if (!event_) layoutIfPending();
  ViewHoldC const hold(*this);
  if (range.anchor == range.caret) {
    auto const& [node, pos] = range.caret;
    PointS const position = node->getAbsolutePosition();
    long const right = position.x + measureStart({node, pos});
    long top = position.y;
    // In an index the caret is below the exponent above it.
    if (Node4C const* const power = pos > 0 ? exponentAbove(*node) : nullptr) {
      bool const isBelow = right - position.x > power->getDX() - node->getDX();
      if (isBelow) top += std::max(0L, power->getDY() + power->getHeight() - node->getDY());
    }
    return {right - 1, top, right, position.y + node->getHeight()};
  }

  if (TableBlockS const block = findBlock(range)) return boxOf(block);
  auto const [start, end] = spanOf(range);
  Node4C const& row = *start.node->getParent();
  PointS const position = row.getAbsolutePosition();
  bool const startsInText = start.node->getType() == NODE4_TEXT;
  bool const endsInText = end.node->getType() == NODE4_TEXT;
  RectangleS box;
  box.left = position.x + start.node->getDX();
  box.left += startsInText ? measureStart(start) : -1;
  box.right = position.x + end.node->getDX();
  box.right += endsInText ? measureStart(end) + 1 : end.node->getWidth() - 1;
  box.top = row.getHeight();
  unsigned long const last = end.node->findChildNumber();
  for (unsigned long i = start.node->findChildNumber(); i <= last; ++i) {
    Node4C const& item = *row.child(i);
    box.top = std::min(box.top, item.getDY());
    box.bottom = std::max(box.bottom, item.getDY() + item.getHeight());
  }
  box.top += position.y;
  box.bottom += position.y;
  return box;
}

}  // namespace zolt::math::ved
