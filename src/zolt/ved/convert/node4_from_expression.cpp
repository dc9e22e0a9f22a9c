#include <memory>
#include <set>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/convert/detail/algebraic_to_node4_visitor.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// The rows an expression may nest below the root's own; one is kept for an exponent that an operator adds
// itself.
constexpr unsigned long max_row_depth = limits::max_nested_rows - 2;

/// The outermost nodes that would open a row deeper than the limit. A node shared by several parents counts
/// as too deep everywhere when it is so in one place: it is shown as text, and nothing is lost.
std::set<algexpr::NodeABC const*> findTooDeep(algexpr::NodeABC const& top, OperatorListC const& operators) {
  std::set<algexpr::NodeABC const*> tooDeep;
  std::vector<std::pair<algexpr::NodeABC const*, unsigned long>> pending{{&top, 0}};
  while (!pending.empty()) {
    auto const [node, depth] = pending.back();
    pending.pop_back();
    auto const* parent = node->asParent();
    if (!parent || tooDeep.count(node) > 0) continue;

    unsigned long const count = parent->numChildren();
    PointerTC<OperatorBC> const op = operators.lookup(node->crefName());
    bool const fits = op && op->fits(*node, count);
    std::size_t const mark = pending.size();
    for (unsigned long i = 0; i < count; ++i) {
      unsigned long const childDepth = depth + (fits && op->hasOwnRow(i) ? 1 : 0);
      if (childDepth > max_row_depth) {
        tooDeep.insert(node);
        pending.resize(mark);
        break;
      }
      pending.emplace_back(&parent->child(i), childDepth);
    }
  }
  return tooDeep;
}

rows::NodeT buildRow(algexpr::AlgebraicExpressionC const& expression, unsigned long precision,
                     algexpr::NumberDisplayFormatE format) {
  auto const operators = OperatorListRepositoryC::lookup(expression.getCASEngine());
  AlgebraicToNode4VisitorC builder(operators, precision, format, nullptr);
  expression.accept(builder);
  rows::NodeT result(builder.takeResult());
  if (builder.getRowDepth() <= max_row_depth) return rows::toRow(std::move(result));

  result.reset();
  auto const tooDeep = findTooDeep(*expression.getNode(), *operators);
  AlgebraicToNode4VisitorC bounded(operators, precision, format, &tooDeep);
  expression.accept(bounded);
  return rows::toRow(rows::NodeT(bounded.takeResult()));
}

}  // namespace

Node4C* Node4C::fromAlgebraicExpression(PointerTC<algexpr::AlgebraicExpressionC> const& expression,
                                        unsigned long precision, algexpr::NumberDisplayFormatE format) {
  auto root = std::make_unique<Node4C>(NODE4_ROOT, nullptr, wstring(), 1);
  if (!expression || !expression->getNode()) {
    root->setChild(0, rows::makeEmptyRow().release());
    return root.release();
  }
  root->setChild(0, buildRow(*expression, precision, format).release());

  root->checkTree();
  return root.release();
}

}  // namespace zolt::math::ved
