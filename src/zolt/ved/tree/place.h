#pragma once

namespace zolt::math::ved {

class Node4C;

/// A place for the caret: a text of a tree and a position in it, from 0 to its length. Valid until the next
/// edit of the tree. A null node is no place.
struct PlaceS {
  Node4C const* node = nullptr;
  unsigned int pos = 0;

  explicit operator bool() const { return node != nullptr; }
};

inline bool operator==(PlaceS a, PlaceS b) { return a.node == b.node && a.pos == b.pos; }
inline bool operator!=(PlaceS a, PlaceS b) { return !(a == b); }

/// The two ends of a selection, either of which may come first. Nothing is selected when they are the same
/// place or when the anchor is none.
struct SelectionS {
  PlaceS anchor;
  PlaceS caret;
};

// In all of these a null node gives no place.
[[nodiscard]] PlaceS startOf(Node4C const* text);
[[nodiscard]] PlaceS endOf(Node4C const* text);
/// The first and the last place of a row in canonical form.
[[nodiscard]] PlaceS rowStart(Node4C const& row);
[[nodiscard]] PlaceS rowEnd(Node4C const& row);
[[nodiscard]] SelectionS wholeRow(Node4C const& row);
/// The places just before and just after an item of a row that is not a text.
[[nodiscard]] PlaceS placeBefore(Node4C const& item);
[[nodiscard]] PlaceS placeAfter(Node4C const& item);

/// The places for the caret where a faulty stretch starts and ends. Conversions report any node and an index
/// in what it contributes to its row's text: a row stands for its end, and an item that is not a text is
/// entered from outside.
[[nodiscard]] PlaceS faultStart(PlaceS reported);
[[nodiscard]] PlaceS faultEnd(PlaceS reported);

}  // namespace zolt::math::ved
