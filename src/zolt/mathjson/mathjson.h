#pragma once

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/common/read_error.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::mathjson {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using math::common::ReadErrorS;
using oss::PointerTC;
using oss::wstring;

// Expressions in MathJSON: ["Add", ["Power", "x", 2], 1]. docs/mathjson.md has the table of functions.
// Reading and writing take linear time and do not recurse.

/// The expression that the JSON `text` means. Functions that the table does not have are kept by name. Null
/// when it is no JSON or no expression; `*error` (may be null) then says where and why. Otherwise `*error` is
/// untouched.
[[nodiscard]] PointerTC<AlgebraicExpressionC> fromMathJson(wstring const& text,
                                                           PointerTC<CASSessionBC> session,
                                                           ReadErrorS* error = nullptr);

/// The expression in one line, which reads back to an equal expression. Empty for the empty expression.
wstring toMathJson(AlgebraicExpressionC const& expression);

}  // namespace zolt::mathjson
