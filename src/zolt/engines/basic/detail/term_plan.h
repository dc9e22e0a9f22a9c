#pragma once

#include "zolt/engines/basic/detail/ball.h"
#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

/// The steps that compute a term, the last one being the term itself. False, with the watch's fault, when
/// loops nest too deep.
[[nodiscard]] bool makePlan(TermPoolC const& pool, TermT term, WatchC& watch, PlanS& plan);

/// The numeric value of a term without names. False, with no fault but the end of the time, when it has none
/// that is known.
[[nodiscard]] bool findValue(TermPoolC& pool, TermT term, BallS* value);
/// -1, 0 or 1 when the sign of the term is certain; 2 otherwise.
int findSign(TermPoolC& pool, TermT term);

}  // namespace zolt::engine_basic::detail
