#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The definite integral: child 0 the lower and child 1 the upper bound (smaller), child 2 the integrand,
/// child 3 the variable.
class OperatorIntegralC : public ConstructBC {
 public:
  OperatorIntegralC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
