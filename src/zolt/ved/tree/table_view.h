// Questions about tables: constructs whose rows are the cells of a table (`OperatorBC::getColumns`).
#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

/// A block of cells of one table, from a first to a last row and column.
struct TableBlockS {
  Node4C const* table = nullptr;  ///< null: no block
  unsigned long firstRow = 0;
  unsigned long lastRow = 0;
  unsigned long firstColumn = 0;
  unsigned long lastColumn = 0;

  explicit operator bool() const { return table != nullptr; }
  unsigned long countRows() const { return lastRow - firstRow + 1; }
  unsigned long countColumns() const { return lastColumn - firstColumn + 1; }
};

/// How many columns the table has; 0 for every other node.
[[nodiscard]] unsigned long countColumns(Node4C const& node);
[[nodiscard]] unsigned long countTableRows(Node4C const& table);
/// The row of the tree that is a cell; it must be there.
[[nodiscard]] Node4C* cellAt(Node4C const& table, unsigned long row, unsigned long column);
/// The cell around a place, in the innermost table; no block outside of tables.
[[nodiscard]] TableBlockS findCell(PlaceS place);
/// The block that is selected when the ends of a selection are in different cells of one table; no block
/// elsewhere. With tables in one another it is the innermost one that has both ends.
[[nodiscard]] TableBlockS findBlock(SelectionS const& selection);
/// The block that is selected, else the cell around the caret.
[[nodiscard]] TableBlockS findBlockOrCell(SelectionS const& selection);
/// Whether the place is in a cell of the block.
[[nodiscard]] bool isIn(TableBlockS const& block, PlaceS place);
/// From the start of the block's first cell to the end of its last one.
[[nodiscard]] SelectionS placesOf(TableBlockS const& block);
/// The block of all cells.
[[nodiscard]] TableBlockS wholeTable(Node4C const& table);

}  // namespace zolt::math::ved
