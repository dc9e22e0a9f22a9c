#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// A sign or word before its operand, such as "−" or "not". Plain text in a row. `spaced`: shown with one
/// blank after it.
class OperatorUnaryPrefixC : public OperatorBC {
 public:
  OperatorUnaryPrefixC(wstring const& name, wstring const& text, int precedence, bool spaced,
                       bool coreElement, int code);

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  bool runOperator(ViewZNT4C& view) const override;
  OperatorPlaceE getPlace() const override { return OPERATOR_BEFORE; }

  /// The text as it is shown before an operand.
  wstring const& crefDisplayText() const { return displayText_; }

 private:
  wstring displayText_;
};

}  // namespace zolt::math::ved
