#include "zolt/ved/operators/operator_unary_prefix.h"

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

OperatorUnaryPrefixC::OperatorUnaryPrefixC(wstring const& name, wstring const& text, int precedence,
                                           bool spaced, bool coreElement, int code)
    : OperatorBC(name, text, 1, precedence, true, coreElement, code),
      displayText_(spaced ? text + u" " : text) {}

std::pair<Node4C*, int> OperatorUnaryPrefixC::fromAlgebraicNode(algexpr::NodeABC& node,
                                                                ConversionStackT& stack) const {
  auto const* parent = algexpr::castNode<algexpr::ParentNodeABC>(node);
  if (!parent || parent->numChildren() != 1) return OperatorBC::fromAlgebraicNode(node, stack);

  rows::NodeT row = rows::popRow(stack, getPrecedence());
  row->insertChild(0, rows::makeText(displayText_).release());
  return {row.release(), getPrecedence()};
}

bool OperatorUnaryPrefixC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  insertion.deleteSelection();
  insertion.insertText(displayText_);
  return true;
}

}  // namespace zolt::math::ved
