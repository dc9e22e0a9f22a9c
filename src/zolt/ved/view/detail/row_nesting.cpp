#include "zolt/ved/view/detail/row_nesting.h"

#include <algorithm>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

unsigned long countNestedRows(Node4C const& top) {
  Node4C const* node = &top;
  unsigned long rows = 0;
  unsigned long most = 0;
  for (;;) {
    if (node->getType() == NODE4_LINE) most = std::max(most, ++rows);
    if (node->numChildren() > 0) {
      node = node->child(0);
      continue;
    }
    for (;;) {
      if (node->getType() == NODE4_LINE) --rows;
      if (node == &top) return most;
      Node4C const* const next = node->goRight();
      if (next) {
        node = next;
        break;
      }
      node = node->getParent();
    }
  }
}

unsigned long countRowsAround(Node4C const& node) {
  unsigned long rows = 0;
  for (Node4C const* n = &node; n; n = n->getParent()) {
    if (n->getType() == NODE4_LINE) ++rows;
  }
  return rows;
}

}  // namespace zolt::math::ved
