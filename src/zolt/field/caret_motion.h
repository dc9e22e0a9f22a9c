#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;

/// Where the caret can be asked to go.
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
  MOTION_NEXT_SLOT,  ///< the next empty slot, else behind the construct around the caret
  MOTION_PREVIOUS_SLOT,
  MOTION_OUT_LEFT,  ///< before the construct around the caret
  MOTION_OUT_RIGHT,
};

/// What a motion takes along.
enum MoveE {
  MOVE_CARET,         ///< and drops the selection
  MOVE_SELECTION_END  ///< the selection's other end stays
};

/// The horizontal place that moves up and down keep to, in view coordinates.
constexpr long no_column = -1;

/// Where `motion` leads from `from`; null when it leads nowhere. `column` is kept by the caller between
/// vertical moves, which set it when it is `no_column`. Lays the view out for them.
PlaceS findTarget(CaretMotionE motion, math::ved::ViewZNT4C const& view, PlaceS from, long& column);

}  // namespace zolt::field
