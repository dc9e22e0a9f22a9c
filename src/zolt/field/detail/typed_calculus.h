#pragma once

#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/construct_replacement.h"

namespace zolt::field::detail {

// Derivatives and integrals that are typed as they are printed.

/// What a blank, "(", "^" or a character of a word, which was just typed before the caret, makes of what it
/// ends: of "d/dx" the derivative of the operand that begins after it, the product or what the "(" begins,
/// also with "∂", and with an order where there is a construct for it; of "int_0" before "^" the integral; of
/// an integral in whose first place "x dx" stands the one without bounds. `bounds` are then those of the new
/// construct, which is left open.
ConstructReplacementS findCalculus(math::ved::ViewZNT4C const& view, char16_t typed, TypedBoundsS& bounds);

/// The derivative that a fraction is whose rows were typed as "df" and "dx", with the same "d" or "∂" and
/// order; the caret leaves it.
ConstructReplacementS findFilledDerivative(math::ved::OperatorListC const& operators,
                                           math::ved::Node4C const& fraction);

/// Where the "∂" or "∂²" begins that ends at the place, which is above the bar of "∂/∂x"; null: none ends
/// there.
PlaceS startOfPartial(PlaceS place);

/// Where what a "/" that is typed at the place divides begins, such a "∂" or a product; null: the view's own
/// rule holds.
PlaceS startOfDividend(PlaceS end, math::ved::OperatorListC const& operators);

/// Whether a name that begins at the place is the "dx" below the bar of "d/dx" or "∂/∂x".
bool isDifferentialBelow(PlaceS begin, wstring const& name);

}  // namespace zolt::field::detail
