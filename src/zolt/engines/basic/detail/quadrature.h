#pragma once

#include <functional>

#include "zolt/engines/basic/detail/ball.h"
#include "zolt/engines/basic/detail/watch.h"

namespace zolt::engine_basic::detail {

/// The value of a function at a number with an error; false, with the watch's fault, where it has none.
using IntegrandT = std::function<bool(double x, double error, BallS* y)>;

/// The integral between two bounds, which may be infinite. At a bound the function need not be defined. The
/// error is an estimate from two rules of different order, several times larger than what they differ by,
/// and the errors of the function's values. False, with the watch's fault at `part`, when it does not
/// converge.
[[nodiscard]] bool integrateBall(IntegrandT const& function, BallS lower, BallS upper, WatchC& watch,
                                 unsigned long part, BallS* result);

}  // namespace zolt::engine_basic::detail
