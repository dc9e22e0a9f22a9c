#pragma once

#include "zolt/ved/operators/operator_where.h"

namespace zolt::catalogue_extended {

/// The value of a variable, also in the form in which programs give an equation: where(f,=(x,1)) is shown as
/// where(f,x,1) is, and written again as the equation that it was. Takes the place of the standard operator.
class OperatorWhereEquationC : public math::ved::OperatorWhereC {
 public:
  explicit OperatorWhereEquationC(OperatorBC const& standard) : OperatorWhereEquationC(standard, u"") {
    equation_ = new OperatorWhereEquationC(standard, u"equation");
  }

  bool fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const override;
  oss::wstring getVariant() const override { return variant_; }
  oss::PointerTC<OperatorBC> findVariant(oss::wstring const& variant) const override;
  oss::wstring arrangeArgumentList(std::vector<oss::wstring> const& arguments) const override;

 protected:
  RowT fromArguments(math::algexpr::NodeABC const& node, std::vector<RowT> arguments) const override;

 private:
  OperatorWhereEquationC(OperatorBC const& standard, oss::wstring variant);

  oss::wstring variant_;
  oss::PointerTC<OperatorBC> equation_;  // null in the variant
};

}  // namespace zolt::catalogue_extended
