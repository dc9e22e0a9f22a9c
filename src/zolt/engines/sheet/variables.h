#pragma once

#include <vector>

#include "zolt/algexpr/algebraic_expression.h"

namespace zolt::engine_sheet {

/// The variables that an expression leaves open, each once, in the order in which they come first: names but
/// for those that a sum, an integral or a condition binds, for what is assigned and for a function's
/// parameters, and for names of values such as `true`.
std::vector<oss::wstring> findVariables(math::algexpr::AlgebraicExpressionC const& expression);

/// A name that is a value and stands for nothing else: `true`, `false` or infinity.
bool isValueName(oss::wstring const& name);

}  // namespace zolt::engine_sheet
