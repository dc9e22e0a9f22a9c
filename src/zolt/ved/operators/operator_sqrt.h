#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The square root: one row, the radicand, under a radical sign.
class OperatorSqrtC : public ConstructBC {
 public:
  OperatorSqrtC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
