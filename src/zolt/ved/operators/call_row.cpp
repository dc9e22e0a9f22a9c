#include "zolt/ved/operators/call_row.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

Node4C* makeItem(Node4TypeE type, wstring const& text) { return new Node4C(type, nullptr, text, 0); }

void insertOperand(Node4C& row, unsigned long i, Node4C* operand) {
  if (operand->getType() == NODE4_LINE) {
    row.spliceChildren(i, operand);
  } else {
    row.insertChild(i, operand);
  }
}

void append(Node4C& row, Node4C* item) { row.insertChild(row.numChildren(), item); }

}  // namespace

Node4C* makeCallRow(wstring const& name, unsigned long numArguments, ConversionStackT& stack) {
  std::vector<Node4C*> arguments(numArguments, nullptr);
  for (unsigned long i = numArguments; i-- > 0 && !stack.empty();) {
    arguments[i] = stack.top().first;
    stack.pop();
  }
  unsigned long largest = 0;
  for (unsigned long i = 0; i < numArguments; ++i) {
    if (!arguments[i]) arguments[i] = makeItem(NODE4_TEXT, wstring());
    if (arguments[i]->numChildren() > arguments[largest]->numChildren()) largest = i;
  }

  Node4C* row = nullptr;
  if (numArguments > 0 && arguments[largest]->getType() == NODE4_LINE) {
    row = arguments[largest];
  } else {
    row = new Node4C(NODE4_LINE, nullptr, wstring(), 0);
    if (numArguments > 0) append(*row, arguments[largest]);
  }
  for (unsigned long i = largest + 1; i < numArguments; ++i) {
    append(*row, makeItem(NODE4_TEXT, u","));
    insertOperand(*row, row->numChildren(), arguments[i]);
  }
  for (unsigned long i = largest; i-- > 0;) {
    row->insertChild(0, makeItem(NODE4_TEXT, u","));
    insertOperand(*row, 0, arguments[i]);
  }
  row->insertChild(0, makeItem(NODE4_OPEN, wstring()));
  row->insertChild(0, makeItem(NODE4_TEXT, name));
  append(*row, makeItem(NODE4_CLOSE, wstring()));
  return row;
}

}  // namespace zolt::math::ved
