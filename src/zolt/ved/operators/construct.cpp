#include "zolt/ved/operators/construct.h"

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/detail/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

ConstructBC::ConstructBC(wstring const& name, wstring const& text, ConstructRowsS rows, int precedence,
                         bool coreElement, int code)
    : OperatorBC(name, text, rows.count, precedence, false, coreElement, code), rows_(std::move(rows)) {}

std::pair<Node4C*, int> ConstructBC::fromAlgebraicNode(algexpr::NodeABC& node,
                                                       ConversionStackT& stack) const {
  algexpr::ParentNodeABC const* const parent = node.asParent();
  unsigned long const count = rows_.count != 0 || !parent ? rows_.count : parent->numChildren();
  auto construct = detail::makeConstructNode(*this, count);
  for (unsigned long i = count; i-- > 0;) {
    unsigned long const row = rows_.order == ROWS_REVERSED ? count - 1 - i : i;
    construct->setChild(row, detail::popRow(stack).release());
  }
  return {construct.release(), getPrecedence()};
}

wstring ConstructBC::arrangeArgumentList(std::vector<wstring> const& arguments) const {
  if (rows_.order == ROWS_LIKE_ARGUMENTS) return OperatorBC::arrangeArgumentList(arguments);
  return OperatorBC::arrangeArgumentList({arguments.rbegin(), arguments.rend()});
}

void ConstructBC::beforeChildrenLayout(Node4C* node, GraphicsABC const&) const {
  for (unsigned long const row : rows_.smaller) node->child(row)->increaseFontDepth();
}

bool ConstructBC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  if (!insertion.mayNestSelection()) return false;
  detail::NodeT selection = insertion.cutSelection();
  unsigned long const target = selection ? rows_.next : 0;
  insertion.splitText(true);
  detail::NodeT node = detail::makeConstructNode(*this, rows_.count);
  Node4C* const construct = node.get();
  insertion.insertBeforeCaret(std::move(node));
  for (unsigned long i = 0; i < rows_.count; ++i) {
    detail::NodeT row = i == rows_.content && selection ? std::move(selection) : detail::makeEmptyRow();
    construct->setChild(i, row.release());
  }
  insertion.placeCaret(rowEnd(*construct->child(target)));
  return true;
}

bool ConstructBC::hasOwnRow(unsigned long) const { return true; }

}  // namespace zolt::math::ved
