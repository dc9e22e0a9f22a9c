#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// The binomial coefficient, n above k between brackets: binomial(n,k).
class OperatorBinomialC : public math::ved::ConstructBC {
 public:
  OperatorBinomialC();
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  /// A call of another number of arguments stays one.
  unsigned long getCallArity() const override { return 0; }
};

}  // namespace zolt::catalogue_extended
