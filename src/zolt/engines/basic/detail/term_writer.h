#pragma once

#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

enum FractionsE {
  FRACTIONS_AS_QUOTIENTS,
  FRACTIONS_AS_DECIMALS  ///< those that have few decimal places
};

/// A term as an expression in the form in which people write it. `slots` are the names of the slots. Null,
/// with the watch's fault, when it would be too large.
PointerTC<NodeABC> writeTerm(TermPoolC& pool, TermT term, FractionsE fractions,
                             std::vector<wstring> const& slots);

}  // namespace zolt::engine_basic::detail
