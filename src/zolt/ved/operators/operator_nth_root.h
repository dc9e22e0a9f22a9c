#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The n-th root: child 0 is the index (smaller), child 1 the radicand. Arguments: radicand, index.
class OperatorNthRootC : public ConstructBC {
 public:
  OperatorNthRootC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
