#pragma once

#include <string>

#include "zolt/algexpr/cas_request.h"

namespace zolt::tests {

using ExpressionT = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;

ExpressionT readExpression(std::string const& text);
std::string writeExpression(ExpressionT const& expression);

/// The value, "±" and how many digits of it are certain if it is rounded; or "?" or "!" and the reason.
std::string describeResult(math::algexpr::CASResultS const& result,
                           math::algexpr::CASRequestS const& request);

/// Compares the engine's answers with those of a case file. What a person sees of a value is read back as the
/// same value, and an exact value is the rounded one.
void expectAnswers(oss::PointerTC<math::algexpr::CASEngineABC> const& engine, std::string const& path);

}  // namespace zolt::tests
