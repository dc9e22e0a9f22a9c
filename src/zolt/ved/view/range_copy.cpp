#include "zolt/ved/view/range_copy.h"

#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::math::ved {

namespace {

/// A table with copies of the cells of a block, in a row.
std::unique_ptr<Node4C> copyBlock(TableBlockS block, OperatorListC const& operators) {
  auto const registered = operators.lookup(block.table->crefText());
  auto op = registered ? registered->findColumns(block.countColumns()) : nullptr;
  if (!op) {
    // Its columns belong together.
    op = block.table->getOperator();
    block.firstColumn = 0;
    block.lastColumn = countColumns(*block.table) - 1;
  }
  unsigned long const columns = block.countColumns();
  auto table = rows::makeConstruct(*op, block.countRows() * columns);
  for (unsigned long i = 0; i < table->numChildren(); ++i) {
    Node4C const& cell = *cellAt(*block.table, block.firstRow + i / columns, block.firstColumn + i % columns);
    table->setChild(i, cell.clone());
  }
  auto row = rows::toRow(std::move(table));
  row->checkTree();
  return row;
}

}  // namespace

std::unique_ptr<Node4C> copyRow(SelectionS const& range, OperatorListC const& operators) {
  if (!range.anchor) return nullptr;
  if (TableBlockS const block = findBlock(range)) return copyBlock(block, operators);
  auto const [start, end] = inOneRow(range);
  Node4C const& row = *start.node->getParent();
  unsigned long const first = start.node->findChildNumber();
  unsigned long const count = end.node->findChildNumber() - first + 1;
  auto copy = std::make_unique<Node4C>(NODE4_LINE, count);
  for (unsigned long i = 0; i < count; ++i) copy->setChild(i, row.child(first + i)->clone());
  // The end is cut first, since both ends may be in the same text.
  copy->child(count - 1)->refText().erase(end.pos);
  copy->child(0)->refText().erase(0, start.pos);
  copy->checkTree();
  return copy;
}

oss::bytestring writeCopy(Node4C const& row, SelectionS const& range) {
  return writeBytes(findBlock(range) ? *row.child(1) : row);
}

}  // namespace zolt::math::ved
