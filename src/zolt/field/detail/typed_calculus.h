#pragma once

#include "zolt/field/detail/construct_replacement.h"

namespace zolt::field::detail {

// Derivatives and integrals that are typed as they are printed.

/// The derivative that "d/dx" becomes when an operand begins after it, with the character that was just typed
/// before the caret: a blank or a letter, after which its operand is a product, or "(", which it then has for
/// its own. The same with "∂", and with an order, "d²/dx²", where there is a construct for it.
ConstructReplacementS findDerivative(math::ved::ViewZNT4C const& view, char16_t typed);

/// Where the "∂" or "∂²" begins that ends at the place, which is above the bar of "∂/∂x"; null: none ends
/// there.
PlaceS startOfPartial(PlaceS place);

/// The integral that "int_0" becomes when "^" was just typed after it.
ConstructReplacementS findRaisedIntegral(math::ved::ViewZNT4C const& view);

/// The integral without bounds that one becomes when "x dx" was just typed in its first place.
ConstructReplacementS findIndefinite(math::ved::ViewZNT4C const& view);

}  // namespace zolt::field::detail
