#include "zolt/algexpr/cas_session.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/view/detail/selection_bounds.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

namespace {

bool isEmptyRow(Node4C const& row) {
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    Node4C const& item = *row.child(i);
    if (item.getType() != NODE4_TEXT || !item.crefText().empty()) return false;
  }
  return true;
}

/// The only row of a construct or exponent that is not empty.
struct FilledRowsS {
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

bool isTypedBracket(Node4C const& node) {
  return node.getType() == NODE4_OPEN || node.getType() == NODE4_CLOSE;
}

}  // namespace

bool ViewZNT4C::deleteSelection() {
  if (!backupBeforeModif()) return false;
  SelectionBoundsS const bounds(*this);
  if (!bounds.line) return true;
  anchorNode_ = nullptr;

  Node4C* const line = bounds.line;
  unsigned long const first = bounds.first;
  Node4C* const firstItem = line->child(first);
  if (first == bounds.last) {
    firstItem->refText().erase(bounds.firstPos, bounds.lastPos - bounds.firstPos);
    caretPos_ = bounds.firstPos;
    return true;
  }

  line->deleteChildren(first + 1, bounds.last - first - 1);
  caretPos_ = 0;
  Node4C* const lastItem = line->child(first + 1);
  if (lastItem->getType() == NODE4_TEXT) {
    lastItem->refText().erase(0, bounds.lastPos);
    caretNode_ = lastItem;
  } else {
    caretNode_ = new Node4C(NODE4_TEXT, nullptr, wstring(), 0);
    line->replaceChild(first + 1, caretNode_);
  }
  if (firstItem->getType() == NODE4_TEXT) {
    firstItem->refText().erase(bounds.firstPos);
  } else {
    line->deleteChild(first);
  }
  return true;
}

bool ViewZNT4C::doDelete() {
  if (!editable_) return bip();
  if (isSelected()) return deleteSelection();
  if (caretPos_ < caretNode_->sizeText()) {
    backupBeforeModif();
    caretNode_->refText().erase(caretPos_, 1);
    return true;
  }
  Node4C const* const right = caretNode_->goRight();
  if (!right || !isTypedBracket(*right)) return bip();
  backupBeforeModif();
  caretNode_->getParent()->deleteChild(right->findChildNumber());
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
  if (caretPos_ > 0) {
    backupBeforeModif();
    --caretPos_;
    caretNode_->refText().erase(caretPos_, 1);
    return true;
  }
  Node4C* const left = caretNode_->goLeft();
  return left ? backspaceOver(*left) : backspaceOutOfRow();
}

bool ViewZNT4C::backspaceOver(Node4C& item) {
  bool removable = isTypedBracket(item);
  if (item.getType() == NODE4_OPERATOR || item.getType() == NODE4_POWER) {
    removable = FilledRowsS(item).count == 0;
    if (!removable) return stepToEnd(*item.child(item.numChildren() - 1));
  }
  if (!removable) {
    moveCaretLeft();
    needRedraw();
    return false;
  }
  backupBeforeModif();
  item.getParent()->deleteChild(item.findChildNumber());
  return true;
}

bool ViewZNT4C::backspaceOutOfRow() {
  Node4C* const row = caretNode_->getParent();
  Node4C* const construct = row->getParent();
  if (construct->getType() == NODE4_ROOT) return bip();

  FilledRowsS const filled(*construct);
  unsigned long const current = row->findChildNumber();
  if (filled.count > 1) return current > 0 ? stepToEnd(*construct->child(current - 1)) : bip();

  backupBeforeModif();
  Node4C* const outer = construct->getParent();
  unsigned long const place = construct->findChildNumber();
  if (filled.count == 0) {
    caretNode_ = outer->child(place + 1);
    caretPos_ = 0;
    outer->deleteChild(place);
    return true;
  }
  Node4C* const content = construct->cutChild(filled.last);
  if (filled.last != current) placeCaretAtEnd(*content);
  outer->deleteChild(place);
  outer->spliceChildren(place, content);
  return true;
}

bool ViewZNT4C::stepToEnd(Node4C const& row) {
  placeCaretAtEnd(row);
  needRedraw();
  return false;
}

void ViewZNT4C::placeCaretAtEnd(Node4C const& row) {
  caretNode_ = row.child(row.numChildren() - 1);
  caretPos_ = static_cast<unsigned int>(caretNode_->sizeText());
}

}  // namespace zolt::math::ved
