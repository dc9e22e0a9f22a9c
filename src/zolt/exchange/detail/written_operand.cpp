#include "zolt/exchange/detail/written_operand.h"

#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/exchange/detail/notation.h"

namespace zolt::exchange::detail {

using namespace math::algexpr;

bool isNumber(NodeABC const& node) { return castNode<IntegerNodeC>(node) || castNode<FloatNodeC>(node); }

ParentNodeABC const* asBrackets(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->numChildren() == 1 && node.crefName() == bracket_name ? parent : nullptr;
}

NodeABC const* findWrittenOperand(ParentNodeABC const& node, unsigned long index) {
  auto const isGuarded = [&](PointerTC<NodeABC> const& operand) {
    std::vector<PointerTC<NodeABC>> const operands(node.numChildren(), operand);
    PointerTC<NodeABC> const made = math::algexpr::makeOperation(node.crefName(), operands);
    return made->asParent()->childPointer(index) != operand;
  };
  ParentNodeABC const* const brackets = asBrackets(node.child(index));
  if (!brackets) return isGuarded(node.childPointer(index)) ? nullptr : &node.child(index);
  return isGuarded(brackets->childPointer(0)) ? &brackets->child(0) : &node.child(index);
}

}  // namespace zolt::exchange::detail
