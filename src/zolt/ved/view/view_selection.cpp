#include <algorithm>
#include <utility>

#include "zolt/ved/limits.h"
#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/detail/selection_bounds.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

namespace {

unsigned long countAncestors(Node4C const* node) {
  unsigned long count = 0;
  while ((node = node->getParent())) ++count;
  return count;
}

/// Replaces two nodes that are not inside one another by those of their ancestors that have the same parent.
void climbToSiblings(Node4C const*& a, Node4C const*& b) {
  unsigned long depthA = countAncestors(a);
  unsigned long depthB = countAncestors(b);
  for (; depthA > depthB; --depthA) a = a->getParent();
  for (; depthB > depthA; --depthB) b = b->getParent();
  while (a->getParent() != b->getParent()) {
    a = a->getParent();
    b = b->getParent();
  }
}

}  // namespace

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
  Node4C const* caretItem = selection_.caret.node;
  Node4C const* anchorItem = selection_.anchor.node;
  firstPos = selection_.caret.pos;
  lastPos = selection_.anchor.pos;
  if (caretItem == anchorItem) {
    line = caretItem->getParent();
    first = last = caretItem->findChildNumber();
    if (firstPos > lastPos) std::swap(firstPos, lastPos);
    return true;
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
    return true;
  }

  line = caretItem->getParent();
  first = caretItem->findChildNumber();
  last = anchorItem->findChildNumber();
  if (first > last) {
    std::swap(first, last);
    std::swap(firstPos, lastPos);
  }
  return true;
}

SelectionBoundsS::SelectionBoundsS(ViewZNT4C const& view) {
  view.getSelectionBounds(line, first, firstPos, last, lastPos);
}

Node4C const& ViewZNT4C::crefCurrentRow() const {
  Node4C const* const line = SelectionBoundsS(*this).line;
  return line ? *line : *selection_.caret.node->getParent();
}

unsigned long ViewZNT4C::countSelectedRows() const {
  SelectionBoundsS const bounds(*this);
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
