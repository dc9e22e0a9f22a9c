#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

/// The stretch from `near` (the caret's place without the blanks beside it) to `far`. When nothing is found,
/// `far` is no place or equals `near`.
struct OperandStretchS {
  PlaceS near;
  PlaceS far;
  bool group = false;  ///< a bracketed group, perhaps with more after it

  bool isFound() const { return far && far != near; }
};

/// The operand that ends at the caret, for an operator that takes it (as a fraction does): a name or number
/// with its exponents and factorials, a construct, a bracketed group or a function call. Nothing is changed.
OperandStretchS findLeftOperand(PlaceS caret);

/// The operand that starts at the caret: the same, with one exponent.
OperandStretchS findRightOperand(PlaceS caret);

}  // namespace zolt::math::ved
