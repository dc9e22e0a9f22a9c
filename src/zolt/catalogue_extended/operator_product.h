#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// The product of the values of a term: product(variable,from,to,term).
class OperatorProductC : public math::ved::ConstructBC {
 public:
  OperatorProductC();
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  /// A call of another number of arguments stays one.
  unsigned long getCallArity() const override { return 0; }
};

}  // namespace zolt::catalogue_extended
