#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// An expression qualified by a value: child 0 the expression, child 1 the variable and child 2 its value
/// (both smaller), shown as expression, bar, variable = value.
class OperatorWhereC : public OperatorBC {
 public:
  OperatorWhereC(wstring const& name, wstring const& text, bool coreElement, int code);
  ~OperatorWhereC() override;

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  void beforeChildrenLayout(Node4C* node, GraphicsABC const& graphics) const override;
  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
  bool runOperator(ViewZNT4C& view) const override;
  bool hasOwnRow(unsigned long index) const override;
};

}  // namespace zolt::math::ved
