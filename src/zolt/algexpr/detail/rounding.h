#pragma once

#include <functional>

#include "zolt/algexpr/cas_request.h"

namespace zolt::math::algexpr::detail {

/// The rounded number of a part of an expression.
using RoundT = std::function<CASResultS(PointerTC<NodeABC> const& part)>;

/// The value of `result` with the constants in it rounded: those in a sum, those that are factors, and those
/// that functions are applied to. Exponents that are whole stay. `result` as it is when its value is none.
CASResultS roundConstants(CASResultS const& result, RoundT const& round);

}  // namespace zolt::math::algexpr::detail
