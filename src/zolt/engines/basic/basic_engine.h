#pragma once

#include "zolt/algexpr/cas_engine.h"

namespace zolt::engine_basic {

/// The engine that is always there: exact arithmetic, collecting and cancelling, derivatives, integrals of
/// polynomials, finite sums, linear and quadratic equations; numeric values of everything in the standard
/// catalogue, whose error is known. What is beyond it is left unevaluated. docs/engines.md says what it does.
/// It has no state: any number of threads may ask one engine.
class BasicEngineC : public math::algexpr::CASEngineABC {
 public:
  oss::wstring getName() const override { return u"basic"; }
  unsigned getCapabilities() const override;
  math::algexpr::CASResultS compute(math::algexpr::CASRequestS const& request,
                                    math::algexpr::CASStopC const* stop = nullptr) const override;
};

}  // namespace zolt::engine_basic
