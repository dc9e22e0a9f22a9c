#include <utility>

#include "zolt/algexpr/cas_session.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

namespace {

/// How many rows of a construct or exponent are not empty, and the last of them.
struct FilledRowsS {
  FilledRowsS() = default;
  explicit FilledRowsS(Node4C const& construct) {
    for (unsigned long i = 0; i < construct.numChildren(); ++i) {
      if (isEmptyRow(*construct.child(i))) continue;
      ++count;
      last = i;
    }
  }

  unsigned long count = 0;
  unsigned long last = 0;
};

}  // namespace

bool ViewZNT4C::deleteSelection() {
  if (!backupBeforeModif()) return false;
  if (!isSelected()) return true;
  if (TableBlockS const block = findBlock(selection_)) return clearBlock(block);
  auto const [start, end] = inOneRow(std::exchange(selection_, {{}, selection_.caret}));
  Node4C* const row = start.node->getParent();
  unsigned long const first = start.node->findChildNumber();
  selection_.caret = start;
  if (start.node == end.node) {
    refCaretNode().refText().erase(start.pos, end.pos - start.pos);
    return true;
  }
  row->deleteChildren(first + 1, end.node->findChildNumber() - first - 1);
  row->child(first)->refText().erase(start.pos);
  row->child(first + 1)->refText().erase(0, end.pos);
  selection_.caret = startOf(row->child(first + 1));
  return true;
}

bool ViewZNT4C::clearBlock(TableBlockS const& block) {
  for (unsigned long row = block.firstRow; row <= block.lastRow; ++row) {
    for (unsigned long column = block.firstColumn; column <= block.lastColumn; ++column) {
      Node4C* const cell = cellAt(*block.table, row, column);
      if (isEmptyRow(*cell)) continue;
      cell->deleteChildren(0, cell->numChildren());
      cell->insertChild(0, new Node4C);
    }
  }
  selection_ = {{}, placesOf(block).anchor};
  return true;
}

bool ViewZNT4C::doDelete() {
  if (!editable_) return bip();
  if (isSelected()) return deleteSelection();
  PlaceS const caret = selection_.caret;
  if (caret.pos < caret.node->sizeText()) {
    backupBeforeModif();
    refCaretNode().refText().erase(caret.pos, 1);
    return true;
  }
  Node4C const* const right = caret.node->goRight();
  if (!right || !isTypedBracket(right->getType())) return bip();
  backupBeforeModif();
  right->getParent()->deleteChild(right->findChildNumber());
  return true;
}

bool ViewZNT4C::doClear() {
  if (constraints_ || !backupBeforeModif()) return bip();
  std::unique_ptr<Node4C> root(Node4C::fromAlgebraicExpression(nullptr, 0, algexpr::NUMBER_FORMAT_AUTOMATIC));
  operatorList_ = OperatorListRepositoryC::lookup(algexpr::CASSessionBC::getSession()->getEngine());
  expression_.reset();
  putUp(std::move(root));
  return true;
}

bool ViewZNT4C::doBackspace() {
  if (!editable_) return bip();
  if (isSelected()) return deleteSelection();
  PlaceS& caret = selection_.caret;
  if (caret.pos > 0) {
    backupBeforeModif();
    refCaretNode().refText().erase(--caret.pos, 1);
    return true;
  }
  Node4C* const left = caret.node->goLeft();
  return left ? backspaceOver(*left) : backspaceOutOfRow();
}

bool ViewZNT4C::backspaceOver(Node4C& item) {
  bool removable = isTypedBracket(item.getType());
  if (isConstruct(item.getType())) {
    removable = hasEmptyRows(item);
    if (!removable) return stepToEnd(*item.child(item.numChildren() - 1));
  }
  if (!removable) {
    moveCaret(STEP_LEFT);
    needRedraw();
    return false;
  }
  backupBeforeModif();
  item.getParent()->deleteChild(item.findChildNumber());
  return true;
}

bool ViewZNT4C::backspaceOutOfRow() {
  Node4C* const row = selection_.caret.node->getParent();
  Node4C* const construct = row->getParent();
  if (construct->getType() == NODE4_ROOT) return bip();

  unsigned long const current = row->findChildNumber();
  if (isEmptyRow(*row) && construct->getType() == NODE4_OPERATOR && takeRowAway(*construct, current)) {
    return true;
  }
  bool const staysTable = countColumns(*construct) > 0 && !hasEmptyRows(*construct);
  FilledRowsS const filled = staysTable ? FilledRowsS() : FilledRowsS(*construct);
  if (staysTable || filled.count > 1) return current > 0 ? stepToEnd(*construct->child(current - 1)) : bip();

  backupBeforeModif();
  Node4C* const outer = construct->getParent();
  unsigned long const place = construct->findChildNumber();
  if (filled.count == 0) {
    selection_.caret = startOf(outer->child(place + 1));
    outer->deleteChild(place);
    return true;
  }
  Node4C* const content = construct->cutChild(filled.last);
  if (filled.last != current) selection_.caret = rowEnd(*content);
  outer->deleteChild(place);
  outer->spliceChildren(place, content);
  return true;
}

/// Deletes an empty row of a construct that has fewer rows without it, and goes to the row before it, or to
/// the one after it if it is the first. False, with nothing changed, when the construct keeps it.
bool ViewZNT4C::takeRowAway(Node4C& construct, unsigned long number) {
  auto const left = construct.crefOperator()->afterLosingRow(*operatorList_, construct, number);
  if (!left || construct.numChildren() < 2 || !backupBeforeModif()) return false;
  selection_.caret = number > 0 ? rowEnd(*construct.child(number - 1)) : rowStart(*construct.child(1));
  construct.deleteChild(number);
  construct.setOperator(left);
  return true;
}

bool ViewZNT4C::stepToEnd(Node4C const& row) {
  selection_.caret = rowEnd(row);
  needRedraw();
  return false;
}

}  // namespace zolt::math::ved
