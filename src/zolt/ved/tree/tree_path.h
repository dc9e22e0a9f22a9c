#pragma once

#include <vector>

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

/// The path to a node: the child numbers that lead to it from the root. Unlike a pointer it remains valid
/// when the nodes of the tree are replaced, as long as the shape of the tree before the node is the same.
using TreePathT = std::vector<unsigned long>;

/// From which end the children of a node and the characters of a text are counted.
enum CountE { COUNT_FROM_START, COUNT_FROM_END };

[[nodiscard]] TreePathT pathOf(Node4C const& node, CountE count = COUNT_FROM_START);
/// Null when the path leads nowhere in the tree.
[[nodiscard]] Node4C* nodeAt(Node4C const& root, TreePathT const& path, CountE count = COUNT_FROM_START);

/// A place, given by the path to its text. With an empty path, which would lead to the root, it is no place.
struct PlacePathS {
  TreePathT path;
  unsigned long pos = 0;
};

[[nodiscard]] PlacePathS pathOf(PlaceS place, CountE count = COUNT_FROM_START);
/// The place in the tree; no place when the tree does not have it.
[[nodiscard]] PlaceS placeAt(Node4C const& root, PlacePathS const& path, CountE count = COUNT_FROM_START);
inline bool operator==(PlacePathS const& a, PlacePathS const& b) {
  return a.pos == b.pos && a.path == b.path;
}

/// The ends of a selection, given by the paths to their texts.
struct SelectionPathS {
  PlacePathS anchor;
  PlacePathS caret;
};

[[nodiscard]] SelectionPathS pathOf(SelectionS const& selection);
[[nodiscard]] SelectionS selectionAt(Node4C const& root, SelectionPathS const& path);
inline bool operator==(SelectionPathS const& a, SelectionPathS const& b) {
  return a.anchor == b.anchor && a.caret == b.caret;
}

/// Whether `a` comes before `b` in reading order.
[[nodiscard]] bool isBefore(PlaceS a, PlaceS b);

}  // namespace zolt::math::ved
