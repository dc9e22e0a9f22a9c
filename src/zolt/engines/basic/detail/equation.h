#pragma once

#include <vector>

#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

/// A term as a fraction: what its denominators have in common is in `below`.
struct FractionS {
  TermT above = 0;
  TermT below = 0;  ///< 1 when there are none
};
/// With the denominators that depend on `variable`. The numerator is expanded.
FractionS bringTogether(TermPoolC& pool, TermT term, TermT variable);

/// What solves an equation: one of the lists, in ascending order, when it is some numbers.
struct SolutionsS {
  enum KindE { SOME, ALL, NONE };

  KindE kind = SOME;
  std::vector<TermT> exact{};
  std::vector<RationalC> rounded{};    ///< certain to the digits that were asked for
  std::vector<bool> isRoundedExact{};  ///< of the rounded ones: whether it is all of the number
};

/// The real solutions of `term` = 0 for a name: of linear and quadratic equations, of those that become so
/// with a power of the name as unknown, and of polynomials with rational coefficients. An equation with the
/// variable in denominators is multiplied by these, and a solution at which one of them is 0 is none. With
/// `digits` other than 0, solutions of polynomials are rounded to so many. False, with the watch's fault,
/// when there are none that are real or known.
[[nodiscard]] bool solveEquation(TermPoolC& pool, TermT term, TermT unknown, unsigned digits,
                                 SolutionsS& solutions);

}  // namespace zolt::engine_basic::detail
