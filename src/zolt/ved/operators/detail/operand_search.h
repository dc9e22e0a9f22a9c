// Internal to operators/: finding the operand beside the caret that a fraction takes.
#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved::detail {

/// The stretch from `near` (where the caret stands once the blanks beside it are gone) to `far`. Not found:
/// `far` is no place, or the same as `near`.
struct OperandStretchS {
  PlaceS near;
  PlaceS far;
  bool group = false;  ///< a bracketed group, perhaps with more behind it

  bool isFound() const { return far && far != near; }
};

/// The operand that ends at the caret: a name or number with its exponents and factorials, a construct, a
/// bracketed group or a function call. Nothing is changed.
OperandStretchS findLeftOperand(PlaceS caret);

/// The operand that starts at the caret: the same, with one exponent.
OperandStretchS findRightOperand(PlaceS caret);

}  // namespace zolt::math::ved::detail
