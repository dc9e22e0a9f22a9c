#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// The ceiling: one row between bars with serifs at the top.
class OperatorCeilC : public OperatorBC {
 public:
  OperatorCeilC(wstring const& name, wstring const& text, bool coreElement, int code);
  ~OperatorCeilC() override;

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
  bool runOperator(ViewZNT4C& view) const override;
  bool hasOwnRow(unsigned long index) const override;
};

}  // namespace zolt::math::ved
