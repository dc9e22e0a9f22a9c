#include "zolt/common/float64_util.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/ved/view/detail/event_guard.h"
#include "zolt/ved/view/detail/pastable_row.h"
#include "zolt/ved/view/detail/row_nesting.h"
#include "zolt/ved/view/detail/selection_bounds.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

using oss::bytestring;

namespace {

bytestring writeBytes(Node4C const& row) {
  auto* const bytes = new oss::BinaryStringOutputStreamC;
  PointerTC<oss::ByteOutputStreamABC> const held(bytes);
  PointerTC<oss::ObjectOutputStreamABC> out(new oss::BinaryOutputStreamC(held));
  row.writeObject(out);
  bytes->flush();
  return bytes->getString();
}

/// Null when the bytes are not a row.
std::unique_ptr<Node4C> readRow(bytestring const& bytes) {
  PointerTC<oss::ByteInputStreamABC> const held(new oss::BinaryStringInputStreamC(bytes));
  PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
  auto row = std::make_unique<Node4C>();
  if (!row->readObject(in) || !isPastableRow(*row)) return nullptr;
  return row;
}

}  // namespace

Node4C* ViewZNT4C::copySelection() const {
  SelectionBoundsS const bounds(*this);
  if (!bounds.line) return nullptr;

  unsigned long const count = bounds.last - bounds.first + 1;
  auto copy = std::make_unique<Node4C>(NODE4_LINE, nullptr, wstring(), count);
  for (unsigned long i = 0; i < count; ++i) copy->setChild(i, bounds.line->child(bounds.first + i)->clone());
  // The end first: both may be the same text.
  Node4C* const lastItem = copy->child(count - 1);
  if (lastItem->getType() == NODE4_TEXT) lastItem->refText().erase(bounds.lastPos);
  Node4C* const firstItem = copy->child(0);
  if (firstItem->getType() == NODE4_TEXT) firstItem->refText().erase(0, bounds.firstPos);

  Node4C* noNode = nullptr;
  unsigned noPos = 0;
  copy->checkTree(noNode, noPos, noNode, noPos);
  return copy.release();
}

Node4C* ViewZNT4C::cutSelection() {
  std::unique_ptr<Node4C> copy(copySelection());
  if (copy) deleteSelection();
  return copy.release();
}

bool ViewZNT4C::isAllSelected() const {
  Node4C const* const row = root_->child(0);
  Node4C const* const first = row->child(0);
  Node4C const* const last = row->child(row->numChildren() - 1);
  auto const spans = [&](Node4C const* a, unsigned int posA, Node4C const* b, unsigned int posB) {
    return a == first && posA == 0 && b == last && posB == last->sizeText();
  };
  return spans(anchorNode_, anchorPos_, caretNode_, caretPos_) ||
         spans(caretNode_, caretPos_, anchorNode_, anchorPos_);
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::copy(bytestring& bytes) const {
  if (!editable_ && expression_ && isSelected() && isAllSelected()) return expression_;
  std::unique_ptr<Node4C> const row(copySelection());
  if (!row) return nullptr;
  bytestring written = writeBytes(*row);
  auto expression = row->getAlgebraicExpression(nullptr);
  bytes = std::move(written);
  return expression;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::cut(bytestring& bytes) {
  auto expression = copy(bytes);
  executeEvent(EVENT_KEY, KEY_BACKSPACE, false, false, false, 0, 0);
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
  // The row itself dissolves in the row that it goes into.
  takeBackIfDue();
  if (!row || !mayNest(countNestedRows(*row) - 1)) return bip();
  EventC guard(*this);
  if (deleteSelection()) {
    splitText(true);
    caretNode_->getParent()->insertChild(caretNode_->findChildNumber(), row.release());
  }
  finishEdit();
  guard.finish();
  return true;
}

bool ViewZNT4C::backupBeforeModif() {
  if (!editable_) return bip();
  announceEdit();
  // An empty selection must not grow around what the edit is about to insert.
  if (!isSelected()) anchorNode_ = nullptr;
  return needLayout();
}

void ViewZNT4C::announceEdit() {
  history_->beginStep(*root_, {caretNode_, caretPos_, anchorNode_, anchorPos_});
}

void ViewZNT4C::takeOver(EditBackupC& state) const {
  root_.reset(state.releaseRoot());
  caretNode_ = state.getCaretNode();
  caretPos_ = state.getCaretPos();
  anchorNode_ = state.getAnchorNode();
  anchorPos_ = state.getAnchorPos();
  layoutPending_ = true;
  textOverhang_ = -1;
}

}  // namespace zolt::math::ved
