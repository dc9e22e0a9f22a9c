#pragma once

#include "zolt/algexpr/parent_node.h"

namespace zolt::exchange::detail {

// Products without signs whose factors are "d" and names, as they are read in "d/dx" and "dx".
using NodeT = oss::PointerTC<math::algexpr::NodeABC>;

/// What the exponent of "d" means: so many derivatives, or the order of a single one.
enum OrderE { ORDER_REPEATED, ORDER_KEPT };

/// How many derivatives an exponent means; 1 without one, 0 when it is no number of moderate size.
unsigned countDerivatives(math::algexpr::NodeABC const* exponent);
/// The unit of angles that is an exponent, in the brackets that tell it from a unit after the base; any
/// number of them. Null when there are none.
math::algexpr::ParentNodeABC const* asBracketedUnit(math::algexpr::NodeABC const& exponent);
/// Whether "d^2 y" over "dx^2", or "∂^2 f" over "∂x ∂y", is a derivative. The first factor of both is a "d",
/// in the numerator perhaps with an exponent.
bool isDerivative(math::algexpr::NodeABC const& numerator, math::algexpr::NodeABC const& denominator,
                  OrderE order);
/// The derivative of `operand` by the variables of such a denominator.
NodeT makeDerivative(NodeT operand, math::algexpr::NodeABC const& denominator, OrderE order);
/// Takes "∂f" and "∂x ∂y", in which each "∂" was read as the sign before its operand, apart into factors.
/// False, with nothing changed, when they are something else.
[[nodiscard]] bool separatePartials(NodeT& numerator, NodeT& denominator);
/// The product of all factors but the first.
NodeT withoutFirstFactor(math::algexpr::NodeABC const& product);
/// Takes the "d" and the name, which is the result, off the end of a product; 1 is left when that is all.
NodeT takeDifferential(NodeT& product);

}  // namespace zolt::exchange::detail
