#pragma once

#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

/// Between which bounds an antiderivative gives an integral.
enum ReachE {
  REACH_EVERYWHERE,
  REACH_FROM_ZERO,   ///< where both are at least 0
  REACH_ABOVE_ZERO,  ///< where both are greater than 0
  REACH_UNKNOWN
};

/// An antiderivative by a name or slot: of polynomials, powers, exponential functions, sines, cosines and the
/// like of linear terms, these times powers, and simple fractions and roots. False, perhaps with the watch's
/// fault, when there is none here.
[[nodiscard]] bool integrateTerm(TermPoolC& pool, TermT term, TermT variable, TermT* antiderivative,
                                 ReachE* reach);

}  // namespace zolt::engine_basic::detail
