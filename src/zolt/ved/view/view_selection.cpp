#include <algorithm>
#include <utility>

#include "zolt/ved/limits.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/detail/selection_bounds.h"
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
  SelectionBoundsS const bounds(getSelection());
  if (!bounds.line) return false;
  line = bounds.line;
  first = bounds.first;
  firstPos = bounds.firstPos;
  last = bounds.last;
  lastPos = bounds.lastPos;
  return true;
}

SelectionBoundsS::SelectionBoundsS(SelectionS const& selection)
    : firstPos(selection.caret.pos), lastPos(selection.anchor.pos) {
  Node4C const* caretItem = selection.caret.node;
  Node4C const* anchorItem = selection.anchor.node;
  if (!anchorItem) return;
  if (caretItem == anchorItem) {
    line = caretItem->getParent();
    first = last = caretItem->findChildNumber();
    if (firstPos > lastPos) std::swap(firstPos, lastPos);
    return;
  }

  climbToSiblings(caretItem, anchorItem);
  Node4C const* const common = caretItem->getParent();
  if (common->getType() != NODE4_LINE) {
    unsigned long const item = common->findChildNumber();
    line = common->getParent();
    first = item - 1;
    last = item + 1;
    firstPos = endOf(line->child(first)).pos;
    lastPos = 0;
    return;
  }

  line = caretItem->getParent();
  first = caretItem->findChildNumber();
  last = anchorItem->findChildNumber();
  if (first > last) {
    std::swap(first, last);
    std::swap(firstPos, lastPos);
  }
}

Node4C const& ViewZNT4C::crefCurrentRow() const {
  Node4C const* const line = SelectionBoundsS(getSelection()).line;
  return line ? *line : *selection_.caret.node->getParent();
}

unsigned long ViewZNT4C::countSelectedRows() const {
  SelectionBoundsS const bounds(getSelection());
  if (!bounds.line) return 0;
  unsigned long rows = 0;
  for (unsigned long i = bounds.first; i <= bounds.last; ++i) {
    rows = std::max(rows, countNestedRows(*bounds.line->child(i)));
  }
  return rows;
}

bool ViewZNT4C::mayNest(unsigned long rows) const {
  return countRowsAround(crefCurrentRow()) + rows <= limits::max_nested_rows;
}

}  // namespace zolt::math::ved
