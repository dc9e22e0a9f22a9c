#include "zolt/ved/convert/detail/algebraic_to_node4_visitor.h"

#include <algorithm>
#include <memory>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/ved/operators/call_row.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// Merging copies the right text of the two, so only a short one is merged: in a sum nested to the right that
// text is the whole sum behind it.
constexpr unsigned long longest_merged_text = 64;

bool isPlainText(Node4C const& node) { return node.getType() == NODE4_TEXT && node.numChildren() == 0; }

bool isMergeable(Node4C const& row, unsigned long first) {
  return isPlainText(*row.child(first)) && isPlainText(*row.child(first + 1)) &&
         row.child(first + 1)->sizeText() <= longest_merged_text;
}

void mergePair(Node4C& row, unsigned long first) {
  row.child(first)->refText() += row.child(first + 1)->crefText();
  row.deleteChild(first + 1);
}

/// Merges the texts that an operator put at the ends of its row. Normalisation would do it in the end; done
/// at once, the nodes of signs and names are used again for the next ones, and a tree lies close together in
/// memory.
void mergeEnds(Node4C& row) {
  while (row.numChildren() > 1 && isMergeable(row, row.numChildren() - 2)) {
    mergePair(row, row.numChildren() - 2);
  }
  while (row.numChildren() > 1 && isMergeable(row, 0)) mergePair(row, 0);
}

}  // namespace

AlgebraicToNode4VisitorC::AlgebraicToNode4VisitorC(PointerTC<OperatorListC> operators,
                                                   unsigned long precision,
                                                   algexpr::NumberDisplayFormatE format,
                                                   std::set<algexpr::NodeABC const*> const* asText)
    : NodeVisitorABC(algexpr::VISIT_CHILDREN_FIRST),
      operators_(std::move(operators)),
      precision_(precision),
      format_(format),
      asText_(asText) {}

AlgebraicToNode4VisitorC::~AlgebraicToNode4VisitorC() {
  for (; !stack_.empty(); stack_.pop()) delete stack_.top().first;
}

Node4C* AlgebraicToNode4VisitorC::takeResult() {
  Node4C* const node = stack_.top().first;
  stack_.pop();
  return node;
}

void AlgebraicToNode4VisitorC::visitCoreFunction(algexpr::CoreFunctionNodeC& node) {
  visitNamed(node, node.numChildren());
}

void AlgebraicToNode4VisitorC::visitUserFunction(algexpr::UserFunctionNodeC& node) {
  visitNamed(node, node.numChildren());
}

void AlgebraicToNode4VisitorC::visitCoreConstant(algexpr::CoreConstantNodeC& node) { visitNamed(node, 0); }

void AlgebraicToNode4VisitorC::visitInteger(algexpr::IntegerNodeC& node) { visitNamed(node, 0); }

void AlgebraicToNode4VisitorC::visitFloat(algexpr::FloatNodeC& node) {
  push(new Node4C(NODE4_TEXT, nullptr, node.toString(precision_, format_), 0), 0, 0);
}

void AlgebraicToNode4VisitorC::visitSymbol(algexpr::SymbolNodeC& node) {
  push(new Node4C(NODE4_TEXT, nullptr, node.crefName(), 0), 0, 0);
}

void AlgebraicToNode4VisitorC::visitNamed(algexpr::NodeABC& node, unsigned long numChildren) {
  if (asText_ && asText_->count(&node) > 0) {
    for (unsigned long i = 0; i < numChildren; ++i) {
      delete takeResult();
      rowDepths_.pop_back();
    }
    wstring text = algexpr::AlgebraicExpressionC(&node, nullptr).toPrefixString();
    push(new Node4C(NODE4_TEXT, nullptr, Node4C::PREFIX_C + text + Node4C::PREFIX_C, 0), 0, 0);
    return;
  }
  PointerTC<OperatorBC> const op = operators_->lookup(node.crefName());
  bool const fits = op && op->fits(node, numChildren);
  makeNode(node, fits ? op.get() : nullptr, numChildren);
}

void AlgebraicToNode4VisitorC::makeNode(algexpr::NodeABC& node, OperatorBC const* op,
                                        unsigned long numChildren) {
  unsigned long const rowDepth = popRowDepths(op, numChildren);
  if (op) {
    auto const result = op->fromAlgebraicNode(node, stack_);
    push(result.first, result.second, rowDepth);
  } else if (numChildren > 0) {
    push(makeCallRow(node.crefName(), numChildren, stack_), 0, rowDepth);
  } else {
    push(new Node4C(NODE4_TEXT, nullptr, node.crefName(), 0), 0, 0);
  }
}

void AlgebraicToNode4VisitorC::push(Node4C* node, int precedence, unsigned long rowDepth) {
  std::unique_ptr<Node4C> held(node);
  if (node->getType() == NODE4_LINE) mergeEnds(*node);
  rowDepths_.push_back(rowDepth);
  stack_.emplace(node, precedence);
  held.release();
}

unsigned long AlgebraicToNode4VisitorC::popRowDepths(OperatorBC const* op, unsigned long numChildren) {
  unsigned long deepest = 0;
  std::size_t const first = rowDepths_.size() - numChildren;
  for (unsigned long i = 0; i < numChildren; ++i) {
    unsigned long const own = op && op->hasOwnRow(i) ? 1 : 0;
    deepest = std::max(deepest, rowDepths_[first + i] + own);
  }
  rowDepths_.resize(first);
  return deepest;
}

}  // namespace zolt::math::ved
