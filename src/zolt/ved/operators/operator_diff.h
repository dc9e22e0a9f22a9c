#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// The derivative: child 0 is the variable, child 1 the expression in parentheses. Arguments: expression,
/// variable.
class OperatorDiffC : public OperatorBC {
 public:
  OperatorDiffC(wstring const& name, wstring const& text, int precedence, bool coreElement, int code);
  ~OperatorDiffC() override;

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  wstring arrangeArgumentList(std::vector<wstring> const& arguments) const override;
  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
  bool runOperator(ViewZNT4C& view) const override;
  bool hasOwnRow(unsigned long index) const override;
};

}  // namespace zolt::math::ved
