#include "zolt/algexpr/written_operand.h"

#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/common/signs.h"

namespace zolt::math::algexpr {

bool isNumber(NodeABC const& node) { return castNode<IntegerNodeC>(node) || castNode<FloatNodeC>(node); }

bool isNegativeNumber(NodeABC const& node) {
  return isNumber(node) && node.crefName()[0] == common::minus_sign;
}

bool isName(NodeABC const& node) { return !node.asParent() && !isNumber(node); }

bool isAngleUnit(NodeABC const& node) {
  return !node.asParent() && (node.crefName() == u"r" || node.crefName() == u"o");
}

ParentNodeABC const* asBrackets(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->numChildren() == 1 && node.crefName() == u"_quietpos" ? parent : nullptr;
}

NodeABC const* findWrittenOperand(ParentNodeABC const& node, unsigned long index) {
  auto const isGuarded = [&](PointerTC<NodeABC> const& operand) {
    std::vector<PointerTC<NodeABC>> const operands(node.numChildren(), operand);
    PointerTC<NodeABC> const made = makeOperation(node.crefName(), operands);
    return made->asParent()->childPointer(index) != operand;
  };
  ParentNodeABC const* const brackets = asBrackets(node.child(index));
  if (!brackets) return isGuarded(node.childPointer(index)) ? nullptr : &node.child(index);
  return isGuarded(brackets->childPointer(0)) ? &brackets->child(0) : &node.child(index);
}

unsigned long countColumns(ParentNodeABC const& table) {
  unsigned long columns = 0;
  for (unsigned long i = 0; i < table.numChildren(); ++i) {
    ParentNodeABC const* const row = table.child(i).asParent();
    bool const fits = row && row->crefName() == list_name && (i == 0 || row->numChildren() == columns);
    if (!fits) return 0;
    columns = row->numChildren();
  }
  return columns;
}

ParentNodeABC const* asTable(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->crefName() == u"matrix" && countColumns(*parent) > 0 ? parent : nullptr;
}

std::vector<PointerTC<NodeABC>> childrenOf(ParentNodeABC const& node) {
  std::vector<PointerTC<NodeABC>> children;
  for (unsigned long i = 0; i < node.numChildren(); ++i) children.push_back(node.childPointer(i));
  return children;
}

}  // namespace zolt::math::algexpr
