#pragma once

#include "zolt/field/input_options.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

/// A view whose constraints judge what a field hands out, implied products included, not only what the tree
/// says.
class JudgedViewC final : public math::ved::ViewZNT4C {
 public:
  /// Refers to `options`, which say what is implied.
  JudgedViewC(oss::PointerTC<math::ved::GraphicsABC> graphics, InputOptionsS const& options);
  using ViewZNT4C::isBusy;

 private:
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> getJudgedExpression() const override;

  InputOptionsS const& options_;
};

}  // namespace zolt::field
