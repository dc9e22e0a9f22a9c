#include "zolt/ved/operators/construct.h"

#include <algorithm>

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

ConstructBC::ConstructBC(wstring const& name, wstring const& text, ConstructRowsS rows, int precedence,
                         bool coreElement, int code)
    : OperatorBC(name, text, rows.count, precedence, false, coreElement, code), rows_(std::move(rows)) {}

std::pair<Node4C*, int> ConstructBC::fromAlgebraicNode(algexpr::NodeABC& node,
                                                       ConversionStackT& stack) const {
  algexpr::ParentNodeABC const* const parent = node.asParent();
  unsigned long const count = parent ? parent->numChildren() : rows_.count;
  return {fromArguments(node, rows::popRows(stack, count)).release(), getPrecedence()};
}

ConstructBC::RowT ConstructBC::fromArguments(algexpr::NodeABC const&, std::vector<RowT> arguments) const {
  if (rows_.order == ROWS_REVERSED) std::reverse(arguments.begin(), arguments.end());
  return rows::makeConstruct(*this, std::move(arguments));
}

wstring ConstructBC::arrangeArgumentList(std::vector<wstring> const& arguments) const {
  if (rows_.order == ROWS_LIKE_ARGUMENTS) return OperatorBC::arrangeArgumentList(arguments);
  return OperatorBC::arrangeArgumentList({arguments.rbegin(), arguments.rend()});
}

void ConstructBC::beforeChildrenLayout(Node4C* node, GraphicsABC const&) const {
  for (unsigned long const row : rows_.smaller) {
    if (row < node->numChildren()) node->child(row)->increaseFontDepth();
  }
}

bool ConstructBC::runOperator(ViewZNT4C& view) const {
  unsigned long const count = getInsertedRows();
  ViewInsertionC insertion(view);
  if (count == 0 || !insertion.mayNestSelection()) return false;
  RowT selection = insertion.cutSelection();
  unsigned long const target = selection ? rows_.next : 0;
  std::vector<RowT> rows(count);
  if (selection) rows[rows_.content] = std::move(selection);
  insertion.insertConstruct(rows::makeConstruct(*this, std::move(rows)), target);
  return true;
}

bool ConstructBC::hasOwnRow(unsigned long) const { return true; }

unsigned long ConstructBC::getInsertedRows() const { return rows_.count != 0 ? rows_.count : rows_.inserted; }

void ConstructBC::drawBefore(Node4C const& row, wstring const& text, GraphicsABC const& graphics, long x,
                             long y) {
  long width = 0;
  long height = 0;
  long axis = 0;
  graphics.getTextExtent(text, width, height, axis);
  graphics.drawText(text, x + row.getDX() - width, y + row.getDY() + row.getMidHeight() - axis);
}

}  // namespace zolt::math::ved
