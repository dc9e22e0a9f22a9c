#include "zolt/ved/operators/construct.h"

#include "zolt/ved/operators/detail/operands.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

/// Inserts the construct without its rows at the caret.
Node4C* insertNode(OperatorBC const& op, ViewInsertionC& insertion) {
  insertion.splitText(true);
  auto node =
      std::make_unique<Node4C>(NODE4_OPERATOR, const_cast<OperatorBC*>(&op), wstring(), op.getArity());
  Node4C* const construct = node.get();
  insertion.insertBeforeCaret(std::move(node));
  return construct;
}

}  // namespace

std::pair<Node4C*, int> makeConstruct(OperatorBC const& op, std::initializer_list<unsigned long> rows,
                                      ConversionStackT& stack) {
  auto node = std::make_unique<Node4C>(NODE4_OPERATOR, const_cast<OperatorBC*>(&op), wstring(), rows.size());
  for (unsigned long row : rows) node->setChild(row, detail::popRow(stack).release());
  return {node.release(), op.getPrecedence()};
}

bool insertEnclosure(OperatorBC const& op, ViewZNT4C& view) {
  ViewInsertionC insertion(view);
  if (!insertion.mayNestSelection()) return false;
  detail::NodeT row = insertion.cutSelection();
  Node4C* const construct = insertNode(op, insertion);
  if (!row) row = detail::makeEmptyRow();
  construct->setChild(0, row.release());
  insertion.placeCaret(rowEnd(*construct->child(0)));
  return true;
}

bool insertConstruct(OperatorBC const& op, ViewZNT4C& view, unsigned long content, unsigned long first) {
  ViewInsertionC insertion(view);
  if (!insertion.mayNestSelection()) return false;
  detail::NodeT selection = insertion.cutSelection();
  unsigned long const target = selection ? first : 0;
  Node4C* const construct = insertNode(op, insertion);
  for (unsigned long i = 0; i < construct->numChildren(); ++i) {
    detail::NodeT row = i == content && selection ? std::move(selection) : detail::makeEmptyRow();
    construct->setChild(i, row.release());
  }
  insertion.placeCaret(rowStart(*construct->child(target)));
  return true;
}

}  // namespace zolt::math::ved
