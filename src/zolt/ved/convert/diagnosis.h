#pragma once

#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::algexpr {
class AlgebraicExpressionC;
}

namespace zolt::math::ved {

/// What a formula is: an expression, or why it is none and which part of it is to blame.
struct DiagnosisS {
  oss::PointerTC<algexpr::AlgebraicExpressionC> expression;  ///< null: the formula is incomplete or wrong
  ErrorCauseE cause = ERROR_CAUSE_SYNTAX;                    ///< of a formula that is no expression
  /// The faulty part, as places for the caret. The ends are equal where something is missing. An end that
  /// nobody knows is no place.
  SelectionS range;
};

/// Converts the tree of a formula, in canonical form, and leaves it as it is.
DiagnosisS diagnose(Node4C const& root);

/// Where in a formula each node of its expression came from, in the order of the prefix text: every node
/// before its children. The map is beside the expression, since nodes may be shared. It costs one conversion.
/// Empty when the formula is no expression. What a construct adds of its own came from all of it.
std::vector<SelectionS> findParts(Node4C const& root);

}  // namespace zolt::math::ved
