#include "zolt/ved/operators/operator_binary_infix.h"

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

OperatorBinaryInfixC::OperatorBinaryInfixC(wstring const& name, wstring const& text, int precedence,
                                           bool spaced, bool associative, bool coreElement, int code)
    : OperatorBC(name, text, 2, precedence, true, coreElement, code),
      displayText_(spaced ? u" " + text + u" " : text),
      associative_(associative) {}

std::pair<Node4C*, int> OperatorBinaryInfixC::fromAlgebraicNode(algexpr::NodeABC& node,
                                                                ConversionStackT& stack) const {
  auto const* parent = algexpr::castNode<algexpr::ParentNodeABC>(node);
  if (!parent || parent->numChildren() != 2) return OperatorBC::fromAlgebraicNode(node, stack);

  int const precedence = getPrecedence();
  auto [right, rightPrecedence] = rows::popOperand(stack);
  if (rightPrecedence + (associative_ ? 0 : 1) > precedence) right = rows::bracket(std::move(right));
  rows::NodeT row = rows::popRow(stack, precedence);
  rows::append(*row, rows::makeText(displayText_));
  return {rows::join(std::move(row), std::move(right)).release(), precedence};
}

bool OperatorBinaryInfixC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  insertion.deleteSelection();
  insertion.insertText(displayText_);
  return true;
}

}  // namespace zolt::math::ved
