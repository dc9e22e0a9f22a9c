#pragma once

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::field {

/// A place for the caret: a text of the tree and a position from 0 to its length. Good until the next edit.
struct PlaceS {
  math::ved::Node4C const* node = nullptr;
  unsigned int pos = 0;

  explicit operator bool() const { return node != nullptr; }
};

inline bool operator==(PlaceS a, PlaceS b) { return a.node == b.node && a.pos == b.pos; }
inline bool operator!=(PlaceS a, PlaceS b) { return !(a == b); }

/// The two ends of a selection; nothing is selected when they are equal. Either may come first.
struct SelectionS {
  PlaceS anchor;
  PlaceS caret;
};

}  // namespace zolt::field
