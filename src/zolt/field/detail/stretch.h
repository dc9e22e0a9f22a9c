#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class Node4C;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using math::ved::PlaceS;

/// A stretch of one row, in reading order: from a place in its text `first` to a place in its text `last`.
struct StretchS {
  math::ved::Node4C const* row = nullptr;
  unsigned long first = 0;
  unsigned int firstPos = 0;
  unsigned long last = 0;
  unsigned int lastPos = 0;

  PlaceS begin() const;
  PlaceS end() const;
  bool isEmpty() const { return first == last && firstPos == lastPos; }
};

bool operator==(StretchS const& a, StretchS const& b);

/// The view's selection, an empty stretch at the caret when there is none. A selection across the rows of a
/// construct is widened to the construct, as every command of the view does.
StretchS selectedStretch(math::ved::ViewZNT4C const& view);

}  // namespace zolt::field::detail
