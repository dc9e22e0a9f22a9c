#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// A set of any number of elements: set(a,b,…).
class OperatorSetC : public math::ved::ConstructBC {
 public:
  OperatorSetC();
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  bool fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const override;
  math::ved::PointerTC<OperatorBC> afterLosingRow(math::ved::OperatorListC const& operators,
                                                  math::ved::Node4C const& construct,
                                                  unsigned long row) const override;
};

/// Adds an element after the one with the caret: "," typed in a set. What is right of the caret becomes the
/// new element.
class OperatorElementC : public math::ved::OperatorBC {
 public:
  OperatorElementC();
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;
};

}  // namespace zolt::catalogue_extended
