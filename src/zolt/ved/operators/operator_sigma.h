#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The sum: child 0 the index variable, child 1 its start and child 2 its end (all smaller), child 3 the
/// summand in parentheses.
class OperatorSigmaC : public ConstructBC {
 public:
  OperatorSigmaC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
