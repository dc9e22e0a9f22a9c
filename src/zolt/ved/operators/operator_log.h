#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// The logarithm to a base: child 0 is the base (smaller, lowered), child 1 the argument in parentheses.
/// Arguments: argument, base.
class OperatorLogC : public ConstructBC {
 public:
  OperatorLogC(wstring const& name, wstring const& text, int precedence, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
