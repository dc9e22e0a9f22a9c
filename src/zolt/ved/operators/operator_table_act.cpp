#include "zolt/ved/operators/operator_table_act.h"

#include <algorithm>

#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

/// A table and the block in it that is acted upon.
class TableEditorC {
 public:
  TableEditorC(OperatorListC const& operators, SelectionS const& selection)
      : operators_(operators), selection_(selection), block_(findBlockOrCell(selection)) {
    if (!block_) return;
    columns_ = countColumns(*block_.table);
    rows_ = countTableRows(*block_.table);
  }

  bool mayAct(TableActE act) const;
  void act(TableActE act, ViewInsertionC& insertion);

 private:
  Node4C& refTable() const { return const_cast<Node4C&>(*block_.table); }
  PointerTC<OperatorBC> findVariant(unsigned long columns) const {
    auto const op = operators_.lookup(block_.table->crefText());
    return op ? op->findColumns(columns) : nullptr;
  }
  bool mayAddRow() const { return (rows_ + 1) * columns_ <= limits::max_table_cells; }
  bool mayAddColumn() const {
    return rows_ * (columns_ + 1) <= limits::max_table_cells && findVariant(columns_ + 1);
  }
  bool isAtEndOfCell() const;
  void addRow(unsigned long at);
  void addColumn(unsigned long at);
  void removeTable(ViewInsertionC& insertion);
  void removeRows(ViewInsertionC& insertion);
  void removeColumns(ViewInsertionC& insertion);
  void goToNextCell(ViewInsertionC& insertion);
  void goToNextRow(ViewInsertionC& insertion);
  static void moveRest(ViewInsertionC& insertion, Node4C& cell);
  void placeAt(ViewInsertionC& insertion, unsigned long row, unsigned long column) const {
    insertion.placeAnchor({});
    insertion.placeCaret(rowEnd(*cellAt(*block_.table, row, column)));
  }

  OperatorListC const& operators_;
  SelectionS selection_;
  TableBlockS block_;
  unsigned long columns_ = 0;
  unsigned long rows_ = 0;
};

bool TableEditorC::mayAct(TableActE act) const {
  if (!block_) return false;
  switch (act) {
    case TABLE_ADD_ROW_ABOVE:
    case TABLE_ADD_ROW_BELOW:
      return mayAddRow();
    case TABLE_ADD_COLUMN_LEFT:
    case TABLE_ADD_COLUMN_RIGHT:
      return mayAddColumn();
    case TABLE_REMOVE_ROWS:
      return true;
    case TABLE_REMOVE_COLUMNS:
      return block_.countColumns() == columns_ || findVariant(columns_ - block_.countColumns());
    case TABLE_MOVE_ROWS_UP:
      return block_.firstRow > 0;
    case TABLE_MOVE_ROWS_DOWN:
      return block_.lastRow + 1 < rows_;
    case TABLE_MOVE_COLUMNS_LEFT:
      return block_.firstColumn > 0 && findVariant(columns_);
    case TABLE_MOVE_COLUMNS_RIGHT:
      return block_.lastColumn + 1 < columns_ && findVariant(columns_);
    case TABLE_NEXT_CELL:
      if (block_.lastColumn + 1 < columns_ && isAtEndOfCell()) return true;
      return mayAddColumn() || block_.lastRow + 1 < rows_ || mayAddRow();
    case TABLE_NEXT_ROW:
      return block_.lastRow + 1 < rows_ || mayAddRow();
    default:
      return false;
  }
}

void TableEditorC::act(TableActE act, ViewInsertionC& insertion) {
  switch (act) {
    case TABLE_ADD_ROW_ABOVE:
    case TABLE_ADD_ROW_BELOW: {
      unsigned long const row = act == TABLE_ADD_ROW_ABOVE ? block_.firstRow : block_.lastRow + 1;
      addRow(row);
      return placeAt(insertion, row, 0);
    }
    case TABLE_ADD_COLUMN_LEFT:
    case TABLE_ADD_COLUMN_RIGHT: {
      unsigned long const column = act == TABLE_ADD_COLUMN_LEFT ? block_.firstColumn : block_.lastColumn + 1;
      addColumn(column);
      return placeAt(insertion, 0, column);
    }
    case TABLE_REMOVE_ROWS:
      return block_.countRows() == rows_ ? removeTable(insertion) : removeRows(insertion);
    case TABLE_REMOVE_COLUMNS:
      return block_.countColumns() == columns_ ? removeTable(insertion) : removeColumns(insertion);
    case TABLE_MOVE_ROWS_UP:
      return refTable().rotateRows(block_.firstRow - 1, block_.firstRow, block_.lastRow + 1);
    case TABLE_MOVE_ROWS_DOWN:
      return refTable().rotateRows(block_.firstRow, block_.lastRow + 1, block_.lastRow + 2);
    case TABLE_MOVE_COLUMNS_LEFT:
      return refTable().rotateColumns(block_.firstColumn - 1, block_.firstColumn, block_.lastColumn + 1);
    case TABLE_MOVE_COLUMNS_RIGHT:
      return refTable().rotateColumns(block_.firstColumn, block_.lastColumn + 1, block_.lastColumn + 2);
    case TABLE_NEXT_CELL:
      return goToNextCell(insertion);
    default:
      return goToNextRow(insertion);
  }
}

bool TableEditorC::isAtEndOfCell() const {
  return selection_.caret == rowEnd(*cellAt(*block_.table, block_.lastRow, block_.lastColumn));
}

void TableEditorC::addRow(unsigned long at) {
  rows::insertTableRows(refTable(), at, 1);
  ++rows_;
}

void TableEditorC::addColumn(unsigned long at) {
  rows::insertTableColumns(refTable(), findVariant(++columns_), at);
}

void TableEditorC::removeTable(ViewInsertionC& insertion) {
  insertion.placeAnchor({});
  insertion.placeCaret(placeAfter(*block_.table));
  refTable().getParent()->deleteChild(block_.table->findChildNumber());
}

void TableEditorC::removeRows(ViewInsertionC& insertion) {
  unsigned long const count = block_.countRows();
  bool const isLast = block_.lastRow + 1 == rows_;
  unsigned long const column = insertion.enclosingRow(*block_.table) % columns_;
  placeAt(insertion, isLast ? block_.firstRow - 1 : block_.lastRow + 1, column);
  refTable().deleteChildren(block_.firstRow * columns_, count * columns_);
}

void TableEditorC::removeColumns(ViewInsertionC& insertion) {
  unsigned long const count = block_.countColumns();
  bool const isLast = block_.lastColumn + 1 == columns_;
  unsigned long const caretRow = insertion.enclosingRow(*block_.table) / columns_;
  placeAt(insertion, caretRow, isLast ? block_.firstColumn - 1 : block_.lastColumn + 1);
  refTable().deleteColumns(findVariant(columns_ - count), block_.firstColumn, count);
}

void TableEditorC::goToNextCell(ViewInsertionC& insertion) {
  unsigned long const next = block_.lastColumn + 1;
  bool const hasNext = next < columns_;
  bool const isInCell = selection_.caret.node->getParent()->getParent() == block_.table;
  if (isInCell && !selection_.anchor && !isAtEndOfCell()) {
    bool const isFree = hasNext && isEmptyRow(*cellAt(*block_.table, block_.lastRow, next));
    if (isFree || mayAddColumn()) {
      if (!isFree) addColumn(next);
      moveRest(insertion, *cellAt(*block_.table, block_.lastRow, next));
      return insertion.placeCaret(rowStart(*cellAt(*block_.table, block_.lastRow, next)));
    }
  }
  if (hasNext) return placeAt(insertion, block_.lastRow, next);
  if (!mayAddColumn()) return goToNextRow(insertion);
  addColumn(next);
  placeAt(insertion, block_.lastRow, next);
}

void TableEditorC::goToNextRow(ViewInsertionC& insertion) {
  unsigned long const next = block_.lastRow + 1;
  if (next == rows_) addRow(next);
  placeAt(insertion, next, 0);
}

/// Moves what follows the caret in its row to an empty cell.
void TableEditorC::moveRest(ViewInsertionC& insertion, Node4C& cell) {
  insertion.placeAnchor({});
  insertion.splitText(true);
  Node4C const& text = *insertion.getCaret().node;
  Node4C& row = *text.getParent();
  unsigned long const first = text.findChildNumber();
  cell.deleteChild(0);
  while (row.numChildren() > first) {
    Node4C* const item = row.child(row.numChildren() - 1);
    row.removeChild(row.numChildren() - 1);
    cell.insertChild(0, item);
  }
}

}  // namespace

OperatorTableActC::OperatorTableActC(wstring const& name, TableActE act, int code)
    : OperatorBC(name, name, 0, 0, false, false, code), act_(act) {}

bool OperatorTableActC::mayRun(SelectionS const& selection, OperatorListC const& operators) const {
  return TableEditorC(operators, selection).mayAct(act_);
}

bool OperatorTableActC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  TableEditorC editor(insertion.crefOperatorList(), insertion.getSelection());
  if (!editor.mayAct(act_)) return false;
  editor.act(act_, insertion);
  return true;
}

}  // namespace zolt::math::ved
