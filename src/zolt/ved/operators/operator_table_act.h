#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// What a person does to the table around the caret. Acts on rows and columns take those of the selected
/// block of cells, else those of the caret's cell.
enum TableActE {
  TABLE_ADD_ROW_ABOVE,
  TABLE_ADD_ROW_BELOW,
  TABLE_ADD_COLUMN_LEFT,
  TABLE_ADD_COLUMN_RIGHT,
  TABLE_REMOVE_ROWS,  ///< the table goes with the last of them
  TABLE_REMOVE_COLUMNS,
  TABLE_MOVE_ROWS_UP,
  TABLE_MOVE_ROWS_DOWN,
  TABLE_MOVE_COLUMNS_LEFT,
  TABLE_MOVE_COLUMNS_RIGHT,
  TABLE_NEXT_ROW,   ///< to the first cell of the next row, a new one after the last
  TABLE_NEXT_CELL,  ///< on in the row, which gets a column after its last cell or for what follows the caret
};

/// An act on the table around the caret, as an operator: for palettes, keys and the signs that are typed
/// inside a table (`OperatorWordsS::insideSigns`). It acts on every construct that says how many columns it
/// has (`OperatorBC::getColumns`), and keeps to the limits of tables. A field has a command for each
/// (field/commands.h).
class OperatorTableActC : public OperatorBC {
 public:
  OperatorTableActC(wstring const& name, TableActE act, int code);

  /// Whether the act would change the table around the caret, or move the caret in it.
  bool mayRun(SelectionS const& selection, OperatorListC const& operators) const override;
  /// Refused outside of tables, at the edges of a table and of its limits.
  bool runOperator(ViewZNT4C& view) const override;

 private:
  TableActE act_;
};

}  // namespace zolt::math::ved
