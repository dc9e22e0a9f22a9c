#include "zolt/ved/operators/detail/operands.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::detail {

Node4C* makeText(wstring const& text) { return new Node4C(NODE4_TEXT, nullptr, text, 0); }

Node4C* makeItem(Node4TypeE type) { return new Node4C(type, nullptr, wstring(), 0); }

Node4C* makeEmptyRow() { return makeText(wstring())->inLine(); }

std::pair<Node4C*, int> popOperand(ConversionStackT& stack) {
  if (stack.empty()) return {makeText(wstring()), 0};
  std::pair<Node4C*, int> const operand = stack.top();
  stack.pop();
  return operand;
}

Node4C* popRow(ConversionStackT& stack) { return popOperand(stack).first->inLine(); }

Node4C* makeConstruct(OperatorBC const& op, std::initializer_list<unsigned long> rows,
                      ConversionStackT& stack) {
  auto* node = new Node4C(NODE4_OPERATOR, const_cast<OperatorBC*>(&op), wstring(), rows.size());
  for (unsigned long row : rows) node->setChild(row, popRow(stack));
  return node;
}

Node4C* bracket(Node4C* operand) {
  Node4C* const row = operand->inLine();
  row->insertChild(0, makeItem(NODE4_OPEN));
  append(*row, makeItem(NODE4_CLOSE));
  return row;
}

Node4C* join(Node4C* row, Node4C* operand) {
  if (operand->getType() != NODE4_LINE) {
    append(*row, operand);
    return row;
  }
  if (operand->numChildren() > row->numChildren()) {
    operand->spliceChildren(0, row);
    return operand;
  }
  row->spliceChildren(row->numChildren(), operand);
  return row;
}

void append(Node4C& row, Node4C* item) { row.insertChild(row.numChildren(), item); }

}  // namespace zolt::math::ved::detail
