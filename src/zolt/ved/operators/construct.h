#pragma once

#include <vector>

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

enum RowOrderE { ROWS_LIKE_ARGUMENTS, ROWS_REVERSED };

/// The rows of a construct, numbered in the tree's order.
struct ConstructRowsS {
  unsigned long count;        ///< 0: as many as an expression has arguments
  unsigned long content = 0;  ///< the row that takes the selection when the construct is inserted
  unsigned long next = 0;     ///< the row that the caret goes to then; without a selection it goes to row 0
  std::vector<unsigned long> smaller = {};  ///< the rows that are shown smaller
  RowOrderE order = ROWS_LIKE_ARGUMENTS;
};

/// A two-dimensional construct: an operator that is a node of its own in a tree, with one row for each
/// argument. A subclass places the rows (`layoutNode4`) and draws what is around them (`displayNode4`).
class ConstructBC : public OperatorBC {
 public:
  ConstructBC(wstring const& name, wstring const& text, ConstructRowsS rows, int precedence, bool coreElement,
              int code);

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  wstring arrangeArgumentList(std::vector<wstring> const& arguments) const override;
  void beforeChildrenLayout(Node4C* node, GraphicsABC const& graphics) const override;
  /// Rows that take no selection are empty slots. Refused where rows may not nest deeper.
  bool runOperator(ViewZNT4C& view) const override;
  bool hasOwnRow(unsigned long index) const override;

 private:
  ConstructRowsS rows_;
};

}  // namespace zolt::math::ved
