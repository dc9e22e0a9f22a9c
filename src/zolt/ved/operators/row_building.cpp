#include "zolt/ved/operators/row_building.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::rows {

NodeT makeText(wstring const& text) { return std::make_unique<Node4C>(NODE4_TEXT, nullptr, text, 0); }

NodeT makeOpen() { return std::make_unique<Node4C>(NODE4_OPEN); }

NodeT makeClose() { return std::make_unique<Node4C>(NODE4_CLOSE); }

NodeT makeConstruct(OperatorBC const& op, unsigned long numRows) {
  return std::make_unique<Node4C>(NODE4_OPERATOR, const_cast<OperatorBC*>(&op), wstring(), numRows);
}

NodeT makeConstruct(OperatorBC const& op, std::vector<NodeT> rows) {
  NodeT construct = makeConstruct(op, rows.size());
  for (unsigned long i = 0; i < rows.size(); ++i) {
    construct->setChild(i, (rows[i] ? toRow(std::move(rows[i])) : makeEmptyRow()).release());
  }
  return construct;
}

NodeT makeEmptyRow() { return toRow(makeText(wstring())); }

NodeT toRow(NodeT node) {
  NodeT row(node->inLine());
  node.release();
  return row;
}

std::pair<NodeT, int> popOperand(ConversionStackT& stack) {
  if (stack.empty()) return {makeText(wstring()), 0};
  std::pair<NodeT, int> operand(stack.top().first, stack.top().second);
  stack.pop();
  return operand;
}

NodeT popRow(ConversionStackT& stack) { return toRow(popOperand(stack).first); }

NodeT popRow(ConversionStackT& stack, int precedence) {
  auto [operand, operandPrecedence] = popOperand(stack);
  return bracketIf(operandPrecedence > precedence, std::move(operand));
}

std::vector<NodeT> popRows(ConversionStackT& stack, unsigned long count) {
  std::vector<NodeT> rows(count);
  while (count-- > 0) rows[count] = popRow(stack);
  return rows;
}

NodeT bracket(NodeT operand) {
  NodeT row = toRow(std::move(operand));
  row->insertChild(0, makeOpen().release());
  append(*row, makeClose());
  return row;
}

NodeT bracketIf(bool needed, NodeT operand) {
  return needed ? bracket(std::move(operand)) : toRow(std::move(operand));
}

NodeT join(NodeT row, NodeT operand) {
  if (operand->getType() != NODE4_LINE) {
    append(*row, std::move(operand));
    return row;
  }
  if (operand->numChildren() > row->numChildren()) {
    operand->spliceChildren(0, row.release());
    return operand;
  }
  row->spliceChildren(row->numChildren(), operand.release());
  return row;
}

void append(Node4C& row, NodeT item) { row.insertChild(row.numChildren(), item.release()); }

void insertTableRows(Node4C& table, unsigned long at, unsigned long count) {
  unsigned long const columns = table.crefOperator()->getColumns();
  auto cells = std::make_unique<Node4C>(NODE4_LINE, count * columns);
  for (unsigned long i = 0; i < count * columns; ++i) cells->setChild(i, makeEmptyRow().release());
  table.spliceChildren(at * columns, cells.release());
}

void insertTableColumns(Node4C& table, PointerTC<OperatorBC> const& op, unsigned long at) {
  unsigned long const before = table.crefOperator()->getColumns();
  std::vector<NodeT> cells(table.numChildren() / before * (op->getColumns() - before));
  for (NodeT& cell : cells) cell = makeEmptyRow();
  table.insertColumns(op, at, std::move(cells));
}

}  // namespace zolt::math::ved::rows
