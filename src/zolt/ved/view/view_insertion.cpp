#include "zolt/ved/view/view_insertion.h"

#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/range_copy.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::doRunOperator(PointerTC<OperatorBC> op) {
  if (!backupBeforeModif()) return false;
  return op->runOperator(*this) || bip();
}

OperatorListC const& ViewInsertionC::crefOperatorList() const { return *view_.operatorList_; }

PlaceS ViewInsertionC::getCaret() const { return view_.selection_.caret; }

SelectionS ViewInsertionC::getSelection() const { return view_.getSelection(); }

Node4C& ViewInsertionC::refCaretNode() { return view_.refCaretNode(); }

void ViewInsertionC::placeCaret(PlaceS place) { view_.selection_.caret = place; }

void ViewInsertionC::placeAnchor(PlaceS place) { view_.selection_.anchor = place; }

std::unique_ptr<Node4C> ViewInsertionC::copySelection() const {
  return copyRow(view_.getSelection(), view_.crefOperatorList());
}

std::unique_ptr<Node4C> ViewInsertionC::cutSelection() { return view_.cutSelection(); }

bool ViewInsertionC::deleteSelection() { return view_.deleteSelection(); }

void ViewInsertionC::splitText(bool toRight) { view_.splitText(toRight); }

void ViewInsertionC::insertText(wstring const& text) {
  refCaretNode().refText().insert(view_.selection_.caret.pos, text);
  view_.selection_.caret.pos += static_cast<unsigned int>(text.size());
}

void ViewInsertionC::insertBeforeCaret(std::unique_ptr<Node4C> node) {
  Node4C const& text = *view_.selection_.caret.node;
  text.getParent()->insertChild(text.findChildNumber(), node.release());
}

void ViewInsertionC::insertConstruct(std::unique_ptr<Node4C> construct, unsigned long row) {
  splitText(true);
  Node4C const& inserted = *construct;
  insertBeforeCaret(std::move(construct));
  placeCaret(rowEnd(*inserted.child(row)));
}

Node4C* ViewInsertionC::refEnclosing() {
  return const_cast<Node4C*>(enclosingItem(*view_.selection_.caret.node));
}

Node4C* ViewInsertionC::refEnclosing(wstring const& name) {
  Node4C* item = refEnclosing();
  while (item && !(item->getType() == NODE4_OPERATOR && item->crefText() == name)) {
    item = const_cast<Node4C*>(enclosingItem(*item));
  }
  return item;
}

unsigned long ViewInsertionC::enclosingRow(Node4C const& construct) const {
  Node4C const* row = view_.selection_.caret.node->getParent();
  while (row->getParent() != &construct) row = row->getParent()->getParent();
  return row->findChildNumber();
}

void ViewInsertionC::checkRow(Node4C& row) { row.checkTree(view_.selection_); }

bool ViewInsertionC::mayNest() const { return ved::mayNest(1, view_.getSelection()); }

bool ViewInsertionC::mayNestSelection() const {
  SelectionS const selection = view_.getSelection();
  return ved::mayNest(1 + countNestedRows(selection), selection);
}

// The count includes the caret's row, which makes up for the new row.
bool ViewInsertionC::mayNestRow() const {
  SelectionS const selection = view_.getSelection();
  return ved::mayNest(countNestedRows(crefCurrentRow(selection)), selection);
}

}  // namespace zolt::math::ved
