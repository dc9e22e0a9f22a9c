#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The derivative: child 0 is the variable, child 1 the expression in parentheses. Arguments: expression,
/// variable.
class OperatorDiffC : public ConstructBC {
 public:
  OperatorDiffC(wstring const& name, wstring const& text, int precedence, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
