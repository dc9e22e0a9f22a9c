#include "zolt/common/float64_util.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/detail/event_guard.h"
#include "zolt/ved/view/detail/pastable_row.h"
#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

using oss::bytestring;

namespace {

/// Null when the bytes are not a row.
std::unique_ptr<Node4C> readRow(bytestring const& bytes) {
  PointerTC<oss::ByteInputStreamABC> const held(new oss::BinaryStringInputStreamC(bytes));
  PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
  auto row = std::make_unique<Node4C>();
  if (!row->readObject(in) || !isPastableRow(*row)) return nullptr;
  return row;
}

bool isAll(SelectionS const& selection, Node4C const& root) {
  auto const [start, end] = wholeRow(*root.child(0));
  auto const [anchor, caret] = selection;
  return (anchor == start && caret == end) || (caret == start && anchor == end);
}

}  // namespace

std::unique_ptr<Node4C> ViewZNT4C::copyRow(SelectionS const& range) const {
  if (!range.anchor) return nullptr;
  auto const [start, end] = inOneRow(range);
  Node4C const& row = *start.node->getParent();
  unsigned long const first = start.node->findChildNumber();
  unsigned long const count = end.node->findChildNumber() - first + 1;
  auto copy = std::make_unique<Node4C>(NODE4_LINE, count);
  for (unsigned long i = 0; i < count; ++i) copy->setChild(i, row.child(first + i)->clone());
  // The end is cut first, since both ends may be in the same text.
  copy->child(count - 1)->refText().erase(end.pos);
  copy->child(0)->refText().erase(0, start.pos);
  copy->checkTree();
  return copy;
}

std::unique_ptr<Node4C> ViewZNT4C::cutSelection() {
  auto copy = copyRow(getSelection());
  if (copy) deleteSelection();
  return copy;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::copy(bytestring& bytes) const {
  if (!editable_ && expression_ && isSelected() && isAll(selection_, *root_)) return expression_;
  return copy(getSelection(), bytes);
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::copy(SelectionS const& range, bytestring& bytes) const {
  auto const row = copyRow(range);
  if (!row) return nullptr;
  bytestring written = writeBytes(*row);
  auto expression = row->getAlgebraicExpression(nullptr);
  bytes = std::move(written);
  return expression;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::cut(bytestring& bytes) {
  auto expression = copy(bytes);
  addEvent(EVENT_KEY, KEY_BACKSPACE, false, false, false, 0, 0);
  return expression;
}

bool ViewZNT4C::paste(bytestring const& bytes) {
  if (isBusy() || !editable_) return bip();
  return pasteRow(readRow(bytes));
}

bool ViewZNT4C::paste(PointerTC<algexpr::AlgebraicExpressionC> expression) {
  if (isBusy() || !editable_ || !expression) return bip();
  std::unique_ptr<Node4C> const root(Node4C::fromAlgebraicExpression(
      expression, common::Float64UtilC::max_display_precision, algexpr::NUMBER_FORMAT_AUTOMATIC));
  return pasteRow(std::unique_ptr<Node4C>(root->cutChild(0)));
}

bool ViewZNT4C::pasteRow(std::unique_ptr<Node4C> row) {
  // The pasted row itself does not count below, since normalisation replaces it by its items.
  takeBackIfDue();
  if (!row || !mayNest(countNestedRows(*row) - 1)) return bip();
  EventC guard(*this);
  if (deleteSelection()) {
    splitText(true);
    Node4C const& text = *selection_.caret.node;
    text.getParent()->insertChild(text.findChildNumber(), row.release());
  }
  finishEdit();
  guard.finish();
  return true;
}

bool ViewZNT4C::backupBeforeModif() {
  if (!editable_) return bip();
  announceEdit();
  // The anchor of an empty selection is dropped, or the selection would include what the edit inserts.
  if (!isSelected()) selection_.anchor = {};
  return needLayout();
}

void ViewZNT4C::announceEdit() { history_->beginStep(*root_, selection_); }

void ViewZNT4C::takeOver(EditBackupC& state) const {
  composition_ = {};  // it is in the tree that goes
  root_.reset(state.releaseRoot());
  selection_ = state.getSelection();
  layoutPending_ = true;
  textOverhang_ = -1;
}

}  // namespace zolt::math::ved
