#include "zolt/ved/operators/detail/enclosure.h"

#include "zolt/ved/operators/detail/operands.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved::detail {

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

bool insertEnclosure(OperatorBC const& op, ViewZNT4C& view) {
  ViewInsertionC insertion(view);
  if (!insertion.mayNestSelection()) return false;
  std::unique_ptr<Node4C> content = insertion.cutSelection();
  Node4C* const construct = insertNode(op, insertion);
  Node4C* const row = content ? content.release() : makeEmptyRow();
  construct->setChild(0, row);
  insertion.placeCaretAtEnd(row);
  return true;
}

bool insertConstruct(OperatorBC const& op, ViewZNT4C& view, unsigned long content, unsigned long first) {
  ViewInsertionC insertion(view);
  if (!insertion.mayNestSelection()) return false;
  std::unique_ptr<Node4C> selection = insertion.cutSelection();
  unsigned long const target = selection ? first : 0;
  Node4C* const construct = insertNode(op, insertion);
  for (unsigned long i = 0; i < construct->numChildren(); ++i) {
    construct->setChild(i, i == content && selection ? selection.release() : makeEmptyRow());
  }
  insertion.placeCaret(construct->child(target)->child(0), 0);
  return true;
}

}  // namespace zolt::math::ved::detail
