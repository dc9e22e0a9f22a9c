#pragma once

#include "zolt/algexpr/algebraic_expression.h"

namespace zolt::math::algexpr {

/// A host's rule on which expressions may be entered.
class ConstraintsBC : public oss::RefCountedBC {
 public:
  [[nodiscard]] virtual bool check(PointerTC<AlgebraicExpressionC> expression) const = 0;
};

}  // namespace zolt::math::algexpr
