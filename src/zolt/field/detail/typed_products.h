#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorListC;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using math::ved::OperatorListC;
using math::ved::PlaceS;

// How far back a sign reaches that takes what was typed before it: "/" a product, "^" and "!" a base.

/// Where the product begins that ends at the place, when it has more factors than the last one and no operand
/// follows: what "/" then divides is all of it, as in written text. Null otherwise.
PlaceS startOfProduct(PlaceS place, OperatorListC const& operators);

/// Where the base of the power just before the place begins; null when there is none. What raises that power
/// needs brackets around it, as "!" does.
PlaceS startOfPower(PlaceS place, OperatorListC const& operators);

/// Whether a stretch of a row, in reading order, is one operand, which needs no brackets to be raised.
bool isBase(math::ved::SelectionS const& stretch, OperatorListC const& operators);

}  // namespace zolt::field::detail
