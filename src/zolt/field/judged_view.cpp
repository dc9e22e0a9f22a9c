#include "zolt/field/judged_view.h"

#include <utility>

#include "zolt/field/detail/implied_signs.h"

namespace zolt::field {

JudgedViewC::JudgedViewC(oss::PointerTC<math::ved::GraphicsABC> graphics, InputOptionsS const& options)
    : ViewZNT4C(std::move(graphics)), options_(options) {}

oss::PointerTC<math::algexpr::AlgebraicExpressionC> JudgedViewC::getJudgedExpression() const {
  return detail::diagnoseTyped(crefRoot(), crefOperatorList(), options_).expression;
}

}  // namespace zolt::field
