#pragma once

#include <memory>
#include <vector>

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

enum RowOrderE { ROWS_LIKE_ARGUMENTS, ROWS_REVERSED };

/// What a person reads when an exponent follows a construct.
enum ExponentE {
  EXPONENT_OF_CONSTRUCT,  ///< the exponent of all of it, as after a root or a closing bracket
  EXPONENT_AMBIGUOUS      ///< perhaps that of its last part, as after an integral: readers and makers of
                          ///< expressions put brackets around it (`algexpr::makePower`)
};

/// The rows of a construct, numbered in the tree's order.
struct ConstructRowsS {
  unsigned long count;        ///< 0: as many as an expression has arguments
  unsigned long content = 0;  ///< the row that takes the selection when the construct is inserted
  unsigned long next = 0;     ///< the row that the caret goes to then; without a selection it goes to row 0
  std::vector<unsigned long> smaller = {};  ///< the rows that are shown smaller
  RowOrderE order = ROWS_LIKE_ARGUMENTS;
  ExponentE exponent = EXPONENT_OF_CONSTRUCT;
  unsigned long inserted = 0;  ///< with `count` 0: how many rows a person inserts; 0: nobody inserts it
};

/// A two-dimensional construct: an operator that is a node of its own in a tree, with one row for each
/// argument. A subclass, of the library or of a host, places the rows (`layoutNode4`) and draws what is
/// around them (`displayNode4`). What else may be particular to it has a hook: which rows the arguments
/// become
/// (`fromArguments`) and how they are written again (`arrangeArgumentList`), for which arguments it is used
/// at all (`fits`), variants that differ in what is no row (`findVariant`), and what happens when it is
/// inserted
/// (`runOperator`). `rows` (row_building.h), `ViewInsertionC` and `findLeftOperand` have what these need.
class ConstructBC : public OperatorBC {
 public:
  ConstructBC(wstring const& name, wstring const& text, ConstructRowsS rows, int precedence, bool coreElement,
              int code);

  std::pair<Node4C*, int> fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const override;
  wstring arrangeArgumentList(std::vector<wstring> const& arguments) const override;
  void beforeChildrenLayout(Node4C* node, GraphicsABC const& graphics) const override;
  /// Rows that take no selection are empty slots. Refused where rows may not nest deeper, and for a construct
  /// that nobody inserts.
  bool runOperator(ViewZNT4C& view) const override;
  bool hasOwnRow(unsigned long index) const override;
  unsigned long getInsertedRows() const override;
  bool isAmbiguousBase() const override { return rows_.exponent == EXPONENT_AMBIGUOUS; }

 protected:
  using RowT = std::unique_ptr<Node4C>;

  /// The construct for an expression node: `arguments` has one row for each argument, in the expression's
  /// order. The default puts them in the tree's order. An override may take items out of the rows, and
  /// return the construct of a variant (`rows::makeConstruct`) or, where none fits, a row. Not null.
  virtual RowT fromArguments(algexpr::NodeABC const& node, std::vector<RowT> arguments) const;

  /// Draws `text` left of `row` and on its axis, in the current font: the "=" of a sum, a comma. (x, y) is
  /// the construct's corner.
  static void drawBefore(Node4C const& row, wstring const& text, GraphicsABC const& graphics, long x, long y);

 private:
  ConstructRowsS rows_;
};

}  // namespace zolt::math::ved
