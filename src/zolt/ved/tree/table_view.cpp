#include "zolt/ved/tree/table_view.h"

#include <algorithm>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

namespace {

TableBlockS blockOf(Node4C const& table, unsigned long one, unsigned long other) {
  unsigned long const columns = countColumns(table);
  auto const rows = std::minmax({one / columns, other / columns});
  auto const sides = std::minmax({one % columns, other % columns});
  return {&table, rows.first, rows.second, sides.first, sides.second};
}

unsigned long countNodesAround(Node4C const* node) {
  unsigned long count = 0;
  while ((node = node->getParent())) ++count;
  return count;
}

}  // namespace

unsigned long countColumns(Node4C const& node) {
  return node.getType() == NODE4_OPERATOR ? node.crefOperator()->getColumns() : 0;
}

unsigned long countTableRows(Node4C const& table) { return table.numChildren() / countColumns(table); }

Node4C* cellAt(Node4C const& table, unsigned long row, unsigned long column) {
  return table.child(row * countColumns(table) + column);
}

TableBlockS findCell(PlaceS place) {
  if (!place) return {};
  Node4C const* row = place.node->getParent();
  for (Node4C const* item = enclosingItem(*place.node); item; item = enclosingItem(*item)) {
    if (countColumns(*item) > 0) return blockOf(*item, row->findChildNumber(), row->findChildNumber());
    row = item->getParent();
  }
  return {};
}

TableBlockS findBlock(SelectionS const& selection) {
  if (!selection.anchor || !selection.caret) return {};
  Node4C const* one = selection.anchor.node->getParent();
  Node4C const* other = selection.caret.node->getParent();
  if (one == other) return {};
  unsigned long depth = countNodesAround(one);
  unsigned long otherDepth = countNodesAround(other);
  for (; depth > otherDepth; --depth) one = one->getParent();
  for (; otherDepth > depth; --otherDepth) other = other->getParent();
  while (one->getParent() != other->getParent()) {
    one = one->getParent();
    other = other->getParent();
  }
  if (one == other || !one->getParent() || countColumns(*one->getParent()) == 0) return {};
  return blockOf(*one->getParent(), one->findChildNumber(), other->findChildNumber());
}

TableBlockS findBlockOrCell(SelectionS const& selection) {
  TableBlockS const block = findBlock(selection);
  return block ? block : findCell(selection.caret);
}

bool isIn(TableBlockS const& block, PlaceS place) {
  Node4C const* node = place.node;
  while (node && node->getParent() != block.table) node = node->getParent();
  if (!node) return false;
  unsigned long const columns = countColumns(*block.table);
  unsigned long const row = node->findChildNumber() / columns;
  unsigned long const column = node->findChildNumber() % columns;
  return row >= block.firstRow && row <= block.lastRow && column >= block.firstColumn &&
         column <= block.lastColumn;
}

SelectionS placesOf(TableBlockS const& block) {
  return {rowStart(*cellAt(*block.table, block.firstRow, block.firstColumn)),
          rowEnd(*cellAt(*block.table, block.lastRow, block.lastColumn))};
}

TableBlockS wholeTable(Node4C const& table) { return blockOf(table, 0, table.numChildren() - 1); }

}  // namespace zolt::math::ved
