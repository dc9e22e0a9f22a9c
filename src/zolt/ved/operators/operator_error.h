#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// A mark where the algebra engine could not give a result; it has any number of arguments and cannot be
/// inserted.
class OperatorErrorC : public ConstructBC {
 public:
  OperatorErrorC(wstring const& name, wstring const& text, bool coreElement, int code);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
  bool runOperator(ViewZNT4C& view) const override;
};

}  // namespace zolt::math::ved
