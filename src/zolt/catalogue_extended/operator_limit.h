#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// The limit of a term: limit(f,x,a), or limit(f,x,a,side) with −1 for a limit from below and 1 for one from
/// above. The rows are x, a and f; the side is a variant, "-" or "+". With any other side it stays a call.
class OperatorLimitC : public math::ved::ConstructBC {
 public:
  enum SideE { BOTH_SIDES, FROM_BELOW, FROM_ABOVE };

  /// The registered one, which knows those with a side.
  OperatorLimitC();
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  bool hasOwnRow(unsigned long index) const override { return index < 3; }
  bool fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const override;
  unsigned long getCallArity() const override { return 0; }
  math::ved::wstring arrangeArgumentList(std::vector<math::ved::wstring> const& rows) const override;
  math::ved::wstring getVariant() const override;
  math::ved::PointerTC<OperatorBC> findVariant(math::ved::wstring const& variant) const override;

 protected:
  RowT fromArguments(math::algexpr::NodeABC const& node, std::vector<RowT> arguments) const override;

 private:
  explicit OperatorLimitC(SideE side);

  SideE side_;
  math::ved::PointerTC<OperatorBC> below_, above_;
};

/// Makes the limit around the caret one from a side: "+" or "−" typed in an exponent of the place that the
/// variable goes to, "0^+", or before the comma after it, "0+,".
class OperatorLimitSideC : public math::ved::OperatorBC {
 public:
  explicit OperatorLimitSideC(OperatorLimitC::SideE side);
  static math::ved::wstring nameOf(OperatorLimitC::SideE side);
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;

 private:
  OperatorLimitC::SideE side_;
};

/// Makes the limit around the caret one from both sides: Backspace after the sign of its side.
class OperatorLimitBothC : public math::ved::OperatorBC {
 public:
  OperatorLimitBothC();
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;
};

}  // namespace zolt::catalogue_extended
