#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// Derivatives as a quotient of differentials before what is derived. The rows are the order, if there is
/// one, the variable and the function; the expression has them the other way round.
class OperatorDerivativeBC : public math::ved::ConstructBC {
 public:
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  /// A call of another number of arguments stays one.
  unsigned long getCallArity() const override { return 0; }

 protected:
  enum OrderE { FIRST_ORDER, ANY_ORDER };
  /// `sign`: the "d" or "∂" of the differentials.
  OperatorDerivativeBC(math::ved::wstring const& name, math::ved::wstring const& sign, OrderE order,
                       math::ved::OperatorWordsS words);

 private:
  math::ved::wstring sign_;
  OrderE order_;
};

/// The derivative of any order: diffn(f,x,n).
class OperatorDiffnC : public OperatorDerivativeBC {
 public:
  OperatorDiffnC();
};

/// The partial derivative: pdiff(f,x).
class OperatorPdiffC : public OperatorDerivativeBC {
 public:
  OperatorPdiffC();
};

/// The partial derivative of any order: pdiffn(f,x,n).
class OperatorPdiffnC : public OperatorDerivativeBC {
 public:
  OperatorPdiffnC();
};

}  // namespace zolt::catalogue_extended
