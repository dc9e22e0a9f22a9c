#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// A sign after its operand, such as "!". Plain text in a row.
class OperatorUnaryPostfixC : public OperatorBC {
 public:
  OperatorUnaryPostfixC(wstring const& name, wstring const& text, int precedence, bool coreElement, int code);

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  bool runOperator(ViewZNT4C& view) const override;
  OperatorPlaceE getPlace() const override { return OPERATOR_AFTER; }
};

}  // namespace zolt::math::ved
