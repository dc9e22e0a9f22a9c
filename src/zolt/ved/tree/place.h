#pragma once

namespace zolt::math::ved {

class Node4C;

/// A place for the caret: a text of a tree and a position in it, from 0 to its length. It is valid until the
/// next edit of the tree. Without a node it is no place.
struct PlaceS {
  Node4C const* node = nullptr;
  unsigned int pos = 0;

  explicit operator bool() const { return node != nullptr; }
};

inline bool operator==(PlaceS a, PlaceS b) { return a.node == b.node && a.pos == b.pos; }
inline bool operator!=(PlaceS a, PlaceS b) { return !(a == b); }

/// The two ends of a selection, either of which may come first. Nothing is selected when both are the same
/// place or when the anchor is no place.
struct SelectionS {
  PlaceS anchor;
  PlaceS caret;
};

// For a null node these return no place.
[[nodiscard]] PlaceS startOf(Node4C const* text);
[[nodiscard]] PlaceS endOf(Node4C const* text);
/// The first and the last place of a row in canonical form.
[[nodiscard]] PlaceS rowStart(Node4C const& row);
[[nodiscard]] PlaceS rowEnd(Node4C const& row);
[[nodiscard]] SelectionS wholeRow(Node4C const& row);
/// The places just before and just after an item of a row that is not a text.
[[nodiscard]] PlaceS placeBefore(Node4C const& item);
[[nodiscard]] PlaceS placeAfter(Node4C const& item);

/// The caret places at the start and the end of a faulty stretch. Conversions report any node and an index in
/// what it contributes to its row's text: for a row the place is its end, and for an item that is not a text
/// the place is beside it.
[[nodiscard]] PlaceS faultStart(PlaceS reported);
[[nodiscard]] PlaceS faultEnd(PlaceS reported);

}  // namespace zolt::math::ved
