#include "zolt/ved/view/detail/row_nesting.h"

#include <algorithm>

#include "zolt/ved/limits.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

unsigned long countNestedRows(Node4C const& top) {
  unsigned long rows = 0;
  unsigned long most = 0;
  auto const enter = [&](Node4C const& node) {
    if (node.getType() == NODE4_LINE) most = std::max(most, ++rows);
  };
  auto const leave = [&](Node4C const& node) {
    if (node.getType() == NODE4_LINE) --rows;
  };
  walkTree(top, enter, leave);
  return most;
}

unsigned long countNestedRows(SelectionS const& selection) {
  if (!selection.anchor) return 0;
  auto const [start, end] = spanOf(selection);
  unsigned long rows = 0;
  for (Node4C const* item = start.node; item; item = item == end.node ? nullptr : item->goRight()) {
    rows = std::max(rows, countNestedRows(*item));
  }
  return rows;
}

unsigned long countRowsAround(Node4C const& node) {
  unsigned long rows = 0;
  for (Node4C const* n = &node; n; n = n->getParent()) {
    if (n->getType() == NODE4_LINE) ++rows;
  }
  return rows;
}

Node4C const& crefCurrentRow(SelectionS const& selection) {
  return *spanOf(selection).caret.node->getParent();
}

bool mayNest(unsigned long rows, SelectionS const& selection) {
  return countRowsAround(crefCurrentRow(selection)) + rows <= limits::max_nested_rows;
}

}  // namespace zolt::math::ved
