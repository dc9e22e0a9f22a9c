#include "zolt/ved/tree/place.h"

#include <algorithm>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

PlaceS startOf(Node4C const* text) { return {text, 0}; }

PlaceS endOf(Node4C const* text) { return {text, text ? static_cast<unsigned int>(text->sizeText()) : 0}; }

PlaceS rowStart(Node4C const& row) { return startOf(row.child(0)); }

PlaceS rowEnd(Node4C const& row) { return endOf(row.child(row.numChildren() - 1)); }

SelectionS wholeRow(Node4C const& row) { return {rowStart(row), rowEnd(row)}; }

PlaceS placeBefore(Node4C const& item) { return endOf(item.goLeft()); }

PlaceS placeAfter(Node4C const& item) { return startOf(item.goRight()); }

PlaceS faultStart(PlaceS reported) {
  if (!reported) return reported;
  Node4C const& node = *reported.node;
  switch (node.getType()) {
    case NODE4_ROOT:
      return rowEnd(*node.child(0));
    case NODE4_LINE:
      return rowEnd(node);
    case NODE4_TEXT:
      return {&node, std::min(reported.pos, endOf(&node).pos)};
    default:
      return placeBefore(node);
  }
}

PlaceS faultEnd(PlaceS reported) {
  bool const after = reported && reported.pos > 0 && reported.node->getType() > NODE4_TEXT;
  return after ? placeAfter(*reported.node) : faultStart(reported);
}

}  // namespace zolt::math::ved
