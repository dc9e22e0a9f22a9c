#include "zolt/ved/operators/detail/row_building.h"

namespace zolt::math::ved::detail {

NodeT makeText(wstring const& text) { return std::make_unique<Node4C>(NODE4_TEXT, nullptr, text, 0); }

NodeT makeItem(Node4TypeE type) { return std::make_unique<Node4C>(type, nullptr, wstring(), 0); }

NodeT makeConstructNode(OperatorBC const& op, unsigned long numRows) {
  return std::make_unique<Node4C>(NODE4_OPERATOR, const_cast<OperatorBC*>(&op), wstring(), numRows);
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

NodeT bracket(NodeT operand) {
  NodeT row = toRow(std::move(operand));
  row->insertChild(0, makeItem(NODE4_OPEN).release());
  append(*row, makeItem(NODE4_CLOSE));
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

}  // namespace zolt::math::ved::detail
