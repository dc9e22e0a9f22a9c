#pragma once

#include <vector>

#include "zolt/ved/limits.h"
#include "zolt/ved/operators/construct.h"
#include "zolt/ved/render/table_layout.h"

namespace zolt::catalogue_extended {

using math::ved::GraphicsABC;
using math::ved::Node4C;
using oss::PointerTC;
using oss::wstring;

/// The operators that a typed "," and ";" insert in a table, and a sign that closes it in its empty last row.
constexpr char16_t const* next_cell_name = u"_next_cell";
constexpr char16_t const* next_row_name = u"_next_row";
constexpr char16_t const* table_end_name = u"_table_end";

/// A construct whose rows are the cells of a table: name(list(a,b),list(c,d)), one list for each row of the
/// table. Lists of different lengths, and tables beyond `limits::max_table_cells`, stay the call that they
/// are.
class OperatorTableBC : public math::ved::ConstructBC {
 public:
  /// `columns` of a table that is inserted, with two rows.
  OperatorTableBC(wstring const& name, wstring const& text, unsigned long columns);

  unsigned long getColumns() const override { return columns_; }
  unsigned long getCallArity() const override { return 0; }
  bool fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const override;
  wstring arrangeArgumentList(std::vector<wstring> const& cells) const override;

 protected:
  RowT fromArguments(math::algexpr::NodeABC const& node, std::vector<RowT> lists) const override;
  /// The operator of tables with so many columns; null when there is none.
  virtual PointerTC<OperatorBC> findFor(unsigned long columns) const = 0;
  /// The words that all tables have.
  static math::ved::OperatorWordsS makeWords(wstring const& title);
  /// The usual spaces, with so much room for what is left and right of the cells.
  static math::ved::TableSpacesS spacesBetween(GraphicsABC const& graphics, long left, long right);

 private:
  unsigned long columns_;
};

/// A table of any number of columns. The registered one has two; it makes and keeps the variants with other
/// numbers, whose texts are these numbers.
class OperatorResizableTableBC : public OperatorTableBC {
 public:
  using OperatorTableBC::OperatorTableBC;

  wstring getVariant() const override;
  PointerTC<OperatorBC> findVariant(wstring const& variant) const override;
  PointerTC<OperatorBC> findColumns(unsigned long columns) const override;

 protected:
  static constexpr unsigned long usual_columns = 2;

  PointerTC<OperatorBC> findFor(unsigned long columns) const override { return findColumns(columns); }
  /// Makes the variants; the constructor of the registered operator calls it.
  template <class OperatorT>
  void makeVariants() {
    for (unsigned long columns = 1; columns <= math::ved::limits::max_table_columns; ++columns) {
      variants_.emplace_back(columns == usual_columns ? nullptr : new OperatorT(columns));
    }
  }

 private:
  std::vector<PointerTC<OperatorBC>> variants_;  // the one of n columns at n - 1; null for this operator's
};

}  // namespace zolt::catalogue_extended
