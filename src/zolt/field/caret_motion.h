#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;

/// The ways in which the caret can move.
enum CaretMotionE {
  MOTION_LEFT,  ///< one character, into and out of constructs
  MOTION_RIGHT,
  MOTION_UP,  ///< the nearest place above: into an exponent, from a denominator to the numerator
  MOTION_DOWN,
  MOTION_WORD_LEFT,  ///< one name, number, sign, bracket or whole construct
  MOTION_WORD_RIGHT,
  MOTION_HOME,  ///< the start of the row, from there the start of the formula
  MOTION_END,
  MOTION_FORMULA_START,
  MOTION_FORMULA_END,
  MOTION_NEXT_SLOT,  ///< the next empty slot, else after the construct around the caret
  MOTION_PREVIOUS_SLOT,
  MOTION_OUT_LEFT,  ///< before the construct around the caret
  MOTION_OUT_RIGHT,
};

/// What a motion moves.
enum MoveE {
  MOVE_CARET,         ///< the caret; the selection is dropped
  MOVE_SELECTION_END  ///< one end of the selection; the other end stays
};

/// The value of `column` before the first vertical move.
constexpr long no_column = -1;

/// Where `motion` leads from `from`; null when it leads nowhere. `column` is the horizontal position, in view
/// coordinates, that consecutive vertical moves keep to: the caller keeps it between them, and the first one
/// sets it when it is `no_column`. Vertical moves lay the view out.
PlaceS findTarget(CaretMotionE motion, math::ved::ViewZNT4C const& view, PlaceS from, long& column);

}  // namespace zolt::field
