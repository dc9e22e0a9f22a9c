#include "zolt/ved/operators/call_row.h"

#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

using namespace rows;

namespace {

void insertOperand(Node4C& row, unsigned long i, NodeT operand) {
  if (operand->getType() == NODE4_LINE) {
    row.spliceChildren(i, operand.release());
  } else {
    row.insertChild(i, operand.release());
  }
}

}  // namespace

Node4C* makeCallRow(wstring const& name, unsigned long numArguments, ConversionStackT& stack) {
  std::vector<NodeT> arguments(numArguments);
  for (unsigned long i = numArguments; i-- > 0;) arguments[i] = popOperand(stack).first;
  unsigned long largest = 0;
  for (unsigned long i = 0; i < numArguments; ++i) {
    if (arguments[i]->numChildren() > arguments[largest]->numChildren()) largest = i;
  }

  NodeT row;
  if (numArguments > 0) {
    row = toRow(std::move(arguments[largest]));
  } else {
    row = std::make_unique<Node4C>(NODE4_LINE, nullptr, wstring(), 0);
  }
  for (unsigned long i = largest + 1; i < numArguments; ++i) {
    append(*row, makeText(u","));
    insertOperand(*row, row->numChildren(), std::move(arguments[i]));
  }
  for (unsigned long i = largest; i-- > 0;) {
    row->insertChild(0, makeText(u",").release());
    insertOperand(*row, 0, std::move(arguments[i]));
  }
  row->insertChild(0, makeOpen().release());
  row->insertChild(0, makeText(name).release());
  append(*row, makeClose());
  return row.release();
}

}  // namespace zolt::math::ved
