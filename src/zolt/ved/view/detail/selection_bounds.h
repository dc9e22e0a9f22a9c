// Internal to the view: a selection as one stretch.
#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

/// A selection as a stretch of one row, in reading order (`ViewZNT4C::getSelectionBounds`).
struct SelectionBoundsS {
  explicit SelectionBoundsS(SelectionS const& selection);

  Node4C* line = nullptr;  ///< null: nothing is selected
  unsigned long first = 0;
  unsigned int firstPos = 0;
  unsigned long last = 0;
  unsigned int lastPos = 0;
};

}  // namespace zolt::math::ved
