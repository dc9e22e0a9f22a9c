// Internal to the view: the selection in one piece.
#pragma once

namespace zolt::math::ved {

class Node4C;
class ViewZNT4C;

/// The selection as a stretch of one row, in reading order (`ViewZNT4C::getSelectionBounds`).
struct SelectionBoundsS {
  explicit SelectionBoundsS(ViewZNT4C const& view);

  Node4C* line = nullptr;  ///< null: nothing is selected
  unsigned long first = 0;
  unsigned int firstPos = 0;
  unsigned long last = 0;
  unsigned int lastPos = 0;
};

}  // namespace zolt::math::ved
