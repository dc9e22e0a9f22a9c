#include <algorithm>

#include "zolt/common/float64_util.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/view/detail/event_guard.h"
#include "zolt/ved/view/detail/pastable_row.h"
#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/range_copy.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

using oss::bytestring;

namespace {

/// A row that was copied; null when the bytes are none. Cells are in a table that is not in a row; `isBlock`
/// then tells that the row around it was made here.
std::unique_ptr<Node4C> readRow(bytestring const& bytes, bool& isBlock) {
  PointerTC<oss::ByteInputStreamABC> const held(new oss::BinaryStringInputStreamC(bytes));
  PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
  auto row = std::make_unique<Node4C>();
  if (!row->readObject(in)) return nullptr;
  isBlock = countColumns(*row) > 0;
  if (isBlock) row = rows::toRow(std::move(row));
  if (!isPastableRow(*row)) return nullptr;
  return row;
}

bool isAll(SelectionS const& selection, Node4C const& root) {
  auto const [start, end] = wholeRow(*root.child(0));
  auto const [anchor, caret] = selection;
  return (anchor == start && caret == end) || (caret == start && anchor == end);
}

}  // namespace

std::unique_ptr<Node4C> ViewZNT4C::cutSelection() {
  // An operator takes the table that a block is in.
  if (findBlock(getSelection())) selection_ = inOneRow(selection_);
  auto copy = copyRow(getSelection(), *operatorList_);
  if (copy) deleteSelection();
  return copy;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::copy(bytestring& bytes) const {
  if (!editable_ && expression_ && isSelected() && isAll(selection_, *root_)) return expression_;
  return copy(getSelection(), bytes);
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::copy(SelectionS const& range, bytestring& bytes) const {
  auto const row = copyRow(range, *operatorList_);
  if (!row) return nullptr;
  bytestring written = writeCopy(*row, range);
  auto expression = row->getAlgebraicExpression(nullptr);
  bytes = std::move(written);
  return expression;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::cut(bytestring& bytes) {
  auto expression = copy(bytes);
  addEvent(EVENT_KEY, KEY_BACKSPACE, false, false, false, 0, 0);
  return expression;
}

bool ViewZNT4C::paste(bytestring const& bytes) {
  if (isBusy() || !editable_) return bip();
  bool isBlock = false;
  auto row = readRow(bytes, isBlock);
  if (!row || !isBlock || !findBlockOrCell(getSelection())) return pasteRow(std::move(row));
  row->checkTree();
  Node4C& table = *row->child(1);
  std::vector<std::unique_ptr<Node4C>> cells;
  for (unsigned long i = 0; i < table.numChildren(); ++i) cells.emplace_back(table.child(i)->clone());
  return pasteCells(std::move(cells), countColumns(table));
}

bool ViewZNT4C::paste(PointerTC<algexpr::AlgebraicExpressionC> expression) {
  if (isBusy() || !editable_ || !expression) return bip();
  std::unique_ptr<Node4C> const root(Node4C::fromAlgebraicExpression(
      expression, common::Float64UtilC::max_display_precision, algexpr::NUMBER_FORMAT_AUTOMATIC));
  return pasteRow(std::unique_ptr<Node4C>(root->cutChild(0)));
}

bool ViewZNT4C::pasteRow(std::unique_ptr<Node4C> row) {
  // The pasted row itself does not count below, since normalisation replaces it by its items.
  takeBackIfDue();
  if (!row || !mayNest(countNestedRows(*row) - 1, getSelection())) return bip();
  EventC guard(*this);
  if (deleteSelection()) {
    splitText(true);
    Node4C const& text = *selection_.caret.node;
    text.getParent()->insertChild(text.findChildNumber(), row.release());
  }
  finishEdit();
  guard.finish();
  return true;
}

bool ViewZNT4C::pasteCells(std::vector<std::unique_ptr<Node4C>> cells, unsigned long columns) {
  if (isBusy() || !editable_ || cells.empty() || columns == 0) return bip();
  TableBlockS const at = findBlockOrCell(getSelection());
  if (!at) return bip();
  unsigned long const around = countRowsAround(*cellAt(*at.table, at.firstRow, at.firstColumn));
  for (auto const& cell : cells) {
    if (around - 1 + countNestedRows(*cell) > limits::max_nested_rows) return bip();
  }
  unsigned long const width = std::max(countColumns(*at.table), at.firstColumn + columns);
  unsigned long const rowsBefore = countTableRows(*at.table);
  unsigned long const height = std::max(rowsBefore, at.firstRow + (cells.size() + columns - 1) / columns);
  auto const registered = operatorList_->lookup(at.table->crefText());
  auto const op = width == countColumns(*at.table) ? at.table->getOperator()
                  : registered                     ? registered->findColumns(width)
                                                   : nullptr;
  if (!op || height > limits::max_table_cells / width) return bip();
  EventC guard(*this);
  backupBeforeModif();
  auto& table = const_cast<Node4C&>(*at.table);
  unsigned long const before = countColumns(table);
  if (width > before) rows::insertTableColumns(table, op, before);
  if (height > rowsBefore) rows::insertTableRows(table, rowsBefore, height - rowsBefore);
  unsigned long last = 0;
  for (unsigned long i = 0; i < cells.size(); ++i) {
    last = (at.firstRow + i / columns) * width + at.firstColumn + i % columns;
    table.replaceChild(last, cells[i].release());
  }
  selection_ = {{}, rowEnd(*table.child(last))};
  bool const taken = finishEdit();
  guard.finish();
  return taken;
}

bool ViewZNT4C::backupBeforeModif() {
  if (!editable_) return bip();
  announceEdit();
  // The anchor of an empty selection is dropped, or the selection would include what the edit inserts.
  if (!isSelected()) selection_.anchor = {};
  return needLayout();
}

void ViewZNT4C::announceEdit() { history_->beginStep(*root_, selection_); }

void ViewZNT4C::takeOver(EditBackupC& state) const {
  composition_ = {};  // it is in the tree that goes
  root_.reset(state.releaseRoot());
  selection_ = state.getSelection();
  layoutPending_ = true;
}

}  // namespace zolt::math::ved
