#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// Inserts a table of a certain size, such as a matrix with three rows and four columns. What is selected
/// becomes the first cell.
class OperatorTableTemplateC : public OperatorBC {
 public:
  /// `table` is the name of a registered table of any number of columns.
  OperatorTableTemplateC(wstring const& name, wstring const& table, unsigned long rows,
                         unsigned long columns);

  /// What `sizedName` writes: a table's name with its numbers of rows and columns, as in "matrix:3x4". Null
  /// for any other text.
  static PointerTC<OperatorBC> read(wstring const& text);
  static wstring sizedName(wstring const& table, unsigned long rows, unsigned long columns);

  bool mayRun(SelectionS const& selection, OperatorListC const& operators) const override;
  /// Refused where no such table is known, for sizes beyond the limits, and where it would nest too deep.
  bool runOperator(ViewZNT4C& view) const override;

 private:
  PointerTC<OperatorBC> findTable(OperatorListC const& operators) const;

  wstring table_;
  unsigned long rows_;
  unsigned long columns_;
};

}  // namespace zolt::math::ved
