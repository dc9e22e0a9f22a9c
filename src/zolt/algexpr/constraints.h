#pragma once

#include "zolt/algexpr/algebraic_expression.h"

namespace zolt::math::algexpr {

/// A host's rule on which expressions may be entered.
class ConstraintsBC : public oss::RefCountedBC {
 public:
  [[nodiscard]] virtual bool check(PointerTC<AlgebraicExpressionC> expression) const = 0;
  /// Why `check` refuses the expression, as one English sentence for the person who enters it, without a full
  /// stop; empty when there is nothing to say beyond that it is not allowed.
  virtual wstring explain(AlgebraicExpressionC const&) const { return {}; }
};

}  // namespace zolt::math::algexpr
