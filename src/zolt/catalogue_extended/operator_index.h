#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// A quantity with an index that is a formula, index(a,i), or with two, index(a,i,j), which is the variant
/// "2".
class OperatorIndexC : public math::ved::ConstructBC {
 public:
  /// The registered one, which knows the other.
  OperatorIndexC();
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  long getIndexWidth(math::ved::Node4C const& node) const override;
  void beforeChildrenLayout(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  /// The operand before the caret gets the index.
  bool runOperator(math::ved::ViewZNT4C& view) const override;
  bool fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const override;
  unsigned long getCallArity() const override { return 0; }
  math::ved::PointerTC<OperatorBC> afterLosingRow(math::ved::OperatorListC const& operators,
                                                  math::ved::Node4C const& construct,
                                                  unsigned long row) const override;
  math::ved::wstring getVariant() const override;
  math::ved::PointerTC<OperatorBC> findVariant(math::ved::wstring const& variant) const override;

 protected:
  RowT fromArguments(math::algexpr::NodeABC const& node, std::vector<RowT> arguments) const override;

 private:
  explicit OperatorIndexC(unsigned long indices);

  unsigned long indices_;
  math::ved::PointerTC<OperatorBC> two_;
};

/// Gives the quantity around the caret a second index: "," typed at the end of the first.
class OperatorSecondIndexC : public math::ved::OperatorBC {
 public:
  OperatorSecondIndexC();
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;
};

}  // namespace zolt::catalogue_extended
