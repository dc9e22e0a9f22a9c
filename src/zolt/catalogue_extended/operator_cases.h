#pragma once

#include "zolt/catalogue_extended/operator_table.h"

namespace zolt::catalogue_extended {

/// An expression that depends on conditions: cases(list(x,x>0),list(-x,x<0)), shown as rows of a value and
/// its condition after a brace.
class OperatorCasesC : public OperatorTableBC {
 public:
  OperatorCasesC();

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;

 protected:
  PointerTC<OperatorBC> findFor(unsigned long columns) const override;
};

}  // namespace zolt::catalogue_extended
