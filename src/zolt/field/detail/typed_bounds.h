#pragma once

#include <vector>

#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/input_places.h"

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::field::detail {

// What is typed in constructs with bounds, the outermost first (`TypedBoundsS`).

/// What a character does in the innermost of them.
struct BoundsStepS {
  PlaceS target;           ///< null: the character does what it does elsewhere
  bool isTyped = false;    ///< the character is typed at the target
  bool asComma = false;    ///< it does what "," does there
  char16_t close = u'\0';  ///< what `TypedBoundsS::close` is then
};

/// Whether the row is one name or number.
bool isWord(math::ved::Node4C const& row);

/// Whether a "d" that begins a word and one letter end at the place, "x dx", which are not the beginning of
/// another word: "x di" may become "x div 2".
bool isLoneDifferential(PlaceS place, OperatorListC const& operators);

/// Whether a construct has bounds (`OperatorWordsS::lowerRows`).
bool takesBounds(OperatorBC const& op);

/// Leaves out those that are not around the place.
void keepAround(std::vector<TypedBoundsS>& bounds, PlaceS place);

/// Takes up the construct around the place that the innermost of them has become, a one-sided limit.
void adoptVariant(std::vector<TypedBoundsS>& bounds, PlaceS place);

/// What `decideInput` says, and else, in `step`, what the character does to the bounds.
InputDecisionS decideInBounds(math::ved::ViewZNT4C const& view, char16_t c, InputOptionsS const& options,
                              std::vector<TypedBoundsS> const& bounds, BoundsStepS& step);

/// Where a word between operands that ends at the place leads; null: nowhere.
PlaceS leaveBoundsByWord(PlaceS place, wstring const& word, std::vector<TypedBoundsS> const& bounds,
                         OperatorListC const& operators);

/// The replacement for the "dx" that was just typed at the place: its variable goes to the row for it.
ReplacementS findDifferential(PlaceS place, std::vector<TypedBoundsS> const& bounds,
                              OperatorListC const& operators);

}  // namespace zolt::field::detail
