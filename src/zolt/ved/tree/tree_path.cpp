#include "zolt/ved/tree/tree_path.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

TreePathT pathOf(Node4C const& node, CountE count) {
  std::size_t depth = 0;
  for (Node4C const* at = &node; at->getParent(); at = at->getParent()) ++depth;
  TreePathT path(depth);
  for (Node4C const* at = &node; at->getParent(); at = at->getParent()) {
    unsigned long const i = at->findChildNumber();
    path[--depth] = count == COUNT_FROM_START ? i : at->getParent()->numChildren() - 1 - i;
  }
  return path;
}

Node4C* nodeAt(Node4C const& root, TreePathT const& path, CountE count) {
  auto* node = const_cast<Node4C*>(&root);
  for (unsigned long const i : path) {
    unsigned long const size = node->numChildren();
    if (i >= size) return nullptr;
    node = node->child(count == COUNT_FROM_START ? i : size - 1 - i);
  }
  return node;
}

PlacePathS pathOf(PlaceS place, CountE count) {
  if (!place) return {};
  return {pathOf(*place.node, count),
          count == COUNT_FROM_START ? place.pos : place.node->sizeText() - place.pos};
}

PlaceS placeAt(Node4C const& root, PlacePathS const& path, CountE count) {
  Node4C const* const node = nodeAt(root, path.path, count);
  if (!node || node->getType() != NODE4_TEXT || path.pos > node->sizeText()) return {};
  return {node,
          static_cast<unsigned int>(count == COUNT_FROM_START ? path.pos : node->sizeText() - path.pos)};
}

SelectionPathS pathOf(SelectionS const& selection) {
  return {pathOf(selection.anchor), pathOf(selection.caret)};
}

SelectionS selectionAt(Node4C const& root, SelectionPathS const& path) {
  return {placeAt(root, path.anchor), placeAt(root, path.caret)};
}

bool isBefore(PlaceS a, PlaceS b) {
  return a.node == b.node ? a.pos < b.pos : pathOf(*a.node) < pathOf(*b.node);
}

}  // namespace zolt::math::ved
