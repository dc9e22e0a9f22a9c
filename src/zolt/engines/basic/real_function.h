#pragma once

#include <memory>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_basic {

/// An expression in one variable, made ready to be evaluated at many places, as for a graph: each value costs
/// a loop over its operations and no memory. Values are doubles whose error is known. Used by one thread.
class RealFunctionC {
 public:
  /// `definitions` and `stop` may be null. All calls together take `deadline` at most.
  RealFunctionC(math::algexpr::AlgebraicExpressionC const& expression, oss::wstring const& variable,
                oss::PointerTC<math::algexpr::CASDefinitionsC> definitions, math::algexpr::CASAngleE angle,
                std::chrono::milliseconds deadline, oss::PointerTC<math::algexpr::CASStopC> stop = nullptr);
  ~RealFunctionC();
  RealFunctionC(RealFunctionC const&) = delete;
  RealFunctionC& operator=(RealFunctionC const&) = delete;

  /// Whether it is an expression that has numbers as values, with no other open name than the variable.
  bool isValid() const;
  /// False where the function has no real value, or none is certain, and always after the deadline.
  [[nodiscard]] bool evaluate(double x, double* y);
  /// Whether it is certain that the function has a value everywhere between two places, and no jump. False
  /// also where nobody knows.
  [[nodiscard]] bool isSmooth(double from, double to);
  /// Whether the time is up or a stop was asked for.
  bool isOver() const;

 private:
  struct StateS;

  std::unique_ptr<StateS> state_;
};

}  // namespace zolt::engine_basic
