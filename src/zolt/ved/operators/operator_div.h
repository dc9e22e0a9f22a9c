#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The fraction: child 0, the numerator, above a bar and child 1, the denominator, below it.
class OperatorDivC : public ConstructBC {
 public:
  OperatorDivC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
  bool runOperator(ViewZNT4C& view) const override;
};

}  // namespace zolt::math::ved
