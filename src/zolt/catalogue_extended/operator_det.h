#pragma once

#include "zolt/catalogue_extended/operator_table.h"

namespace zolt::catalogue_extended {

/// A determinant: a matrix between bars.
class OperatorDetC : public OperatorResizableTableBC {
 public:
  /// The one of two columns is to be registered, and has the others as its variants.
  explicit OperatorDetC(unsigned long columns = usual_columns);

  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;
};

}  // namespace zolt::catalogue_extended
