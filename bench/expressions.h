#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::bench {

/// Shapes of expression that the benchmarks grow.
enum class ShapeE {
  flat_sum,    ///< a + b + c + …, nested to the left as every reader builds it
  constructs,  ///< a balanced tree of fractions, roots and powers
  mix          ///< a sum of textbook terms: fractions, powers, roots, integrals, calls
};

/// Prefix text of an expression of about `leaves` names and numbers.
oss::wstring makePrefix(ShapeE shape, long leaves);

char const* nameOf(ShapeE shape);

}  // namespace zolt::bench
