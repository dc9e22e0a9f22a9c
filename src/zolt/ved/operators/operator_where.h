#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// An expression qualified by a value: child 0 the expression, child 1 the variable and child 2 its value
/// (both smaller), shown as expression, bar, variable = value.
class OperatorWhereC : public ConstructBC {
 public:
  OperatorWhereC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::math::ved
