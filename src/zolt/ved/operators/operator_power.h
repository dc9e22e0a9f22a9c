#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// A power, shown as an exponent item (NODE4_POWER) after its base; it is never an operator node itself.
///
/// With a `fixedExponent` it has one argument: the base if `exponentFlag` is set (the fixed text is the
/// exponent, as in a square), else the exponent (the fixed text is the base). Without one, the arguments are
/// base and exponent.
class OperatorPowerC : public OperatorBC {
 public:
  OperatorPowerC(wstring const& name, wstring const& text, int precedence, wstring fixedExponent,
                 bool exponentFlag, bool coreElement, int code);

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  bool runOperator(ViewZNT4C& view) const override;
  bool hasOwnRow(unsigned long index) const override;
  bool isConstruct() const override { return false; }

 private:
  bool hasFixedExponent() const;
  bool hasFixedBase() const;

  wstring fixedExponent_;
  bool exponentFlag_;
};

}  // namespace zolt::math::ved
