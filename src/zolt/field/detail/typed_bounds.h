#pragma once

#include <vector>

#include "zolt/field/detail/input_places.h"

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::field::detail {

// Constructs with bounds that are typed as text has them: "sum_(k=1)^n k", "lim_(x->0) f". In these, signs
// lead from row to row, and out of what is summed, as they do in the text. In the same construct that was
// inserted otherwise they are typed.

/// The constructs around the caret that are typed so, the outermost first. Those that the caret has left may
/// be gone.
using TypedBoundsT = std::vector<math::ved::Node4C const*>;

/// Whether the construct has a variable, a row that the variable's value is written in and, last, what it
/// applies to.
bool takesBounds(OperatorBC const& op);

/// Leaves out those that are not around the place.
void keepAround(TypedBoundsT& bounds, PlaceS place);

/// Takes up the construct around the place that the innermost of them has become, a one-sided limit.
void adoptVariant(TypedBoundsT& bounds, PlaceS place);

/// Whether the sign ends the row of the innermost one's value there, as "," does.
bool endsValue(PlaceS place, char16_t sign, TypedBoundsT const& bounds);

/// Where a sign leads from the place. Its target is null where the sign does what it does elsewhere.
LeavingS leaveBounds(PlaceS place, char16_t sign, TypedBoundsT const& bounds, OperatorListC const& operators,
                     InputOptionsS const& options);

/// The same for a word between operands that ends at the place.
PlaceS leaveBoundsByWord(PlaceS place, wstring const& word, TypedBoundsT const& bounds,
                         OperatorListC const& operators);

/// To what the innermost of them applies to, when a pair of brackets that is the whole upper bound ends at
/// the place: "^(n+1)". Null elsewhere.
PlaceS afterUpperGroup(PlaceS place, TypedBoundsT const& bounds);

}  // namespace zolt::field::detail
