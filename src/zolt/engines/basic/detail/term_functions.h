#pragma once

#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

/// A function of terms, as far as it can be evaluated exactly; else the function as it is. 0, with the
/// watch's fault, where it is not defined.
TermT apply(TermPoolC& pool, OpE op, std::vector<TermT> const& arguments);

}  // namespace zolt::engine_basic::detail
