#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// A sign or word between two operands, such as "+" or "mod". Plain text in a row. `spaced`: shown with one
/// blank on each side. `associative`: a right operand of the same precedence needs no parentheses.
class OperatorBinaryInfixC : public OperatorBC {
 public:
  OperatorBinaryInfixC(wstring const& name, wstring const& text, int precedence, bool spaced,
                       bool associative, bool coreElement, int code);

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  bool runOperator(ViewZNT4C& view) const override;
  OperatorPlaceE getPlace() const override { return OPERATOR_BETWEEN; }

  /// The text as it is shown between two operands.
  wstring const& crefDisplayText() const { return displayText_; }

 private:
  wstring displayText_;
  bool associative_;
};

}  // namespace zolt::math::ved
