#include "zolt/ved/view/view_insertion.h"

#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::doRunOperator(PointerTC<OperatorBC> op) {
  if (!backupBeforeModif()) return false;
  return op->runOperator(*this) || bip();
}

OperatorListC const& ViewInsertionC::crefOperatorList() const { return *view_.operatorList_; }

Node4C* ViewInsertionC::getCaretNode() const { return view_.caretNode_; }

unsigned int ViewInsertionC::getCaretPos() const { return view_.caretPos_; }

void ViewInsertionC::placeCaret(Node4C* node, unsigned int pos) {
  view_.caretNode_ = node;
  view_.caretPos_ = pos;
}

void ViewInsertionC::placeCaretAtEnd(Node4C* row) { view_.placeCaretAtEnd(*row); }

void ViewInsertionC::placeAnchor(Node4C* node, unsigned int pos) {
  view_.anchorNode_ = node;
  view_.anchorPos_ = pos;
}

void ViewInsertionC::clearAnchor() { view_.anchorNode_ = nullptr; }

std::unique_ptr<Node4C> ViewInsertionC::copySelection() const {
  return std::unique_ptr<Node4C>(view_.copySelection());
}

std::unique_ptr<Node4C> ViewInsertionC::cutSelection() {
  return std::unique_ptr<Node4C>(view_.cutSelection());
}

bool ViewInsertionC::deleteSelection() { return view_.deleteSelection(); }

void ViewInsertionC::splitText(bool toRight) { view_.splitText(toRight); }

void ViewInsertionC::insertText(wstring const& text) {
  view_.caretNode_->refText().insert(view_.caretPos_, text);
  view_.caretPos_ += static_cast<unsigned int>(text.size());
}

void ViewInsertionC::insertBeforeCaret(std::unique_ptr<Node4C> node) {
  Node4C* const caretNode = view_.caretNode_;
  caretNode->getParent()->insertChild(caretNode->findChildNumber(), node.release());
}

void ViewInsertionC::checkRow(Node4C& row) {
  row.checkTree(view_.caretNode_, view_.caretPos_, view_.anchorNode_, view_.anchorPos_);
}

bool ViewInsertionC::mayNest() const { return view_.mayNest(1); }

bool ViewInsertionC::mayNestSelection() const { return view_.mayNest(1 + view_.countSelectedRows()); }

// The row itself, which the count includes, stands for the new one.
bool ViewInsertionC::mayNestRow() const { return view_.mayNest(countNestedRows(view_.crefCurrentRow())); }

}  // namespace zolt::math::ved
