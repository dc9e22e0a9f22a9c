#include "zolt/ved/view/detail/event_guard.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::canUndo() const { return editable_ && history_->canUndo(); }

bool ViewZNT4C::canRedo() const { return editable_ && history_->canRedo(); }

bool ViewZNT4C::undoContinues() const { return canUndo() && history_->undoContinues(); }

bool ViewZNT4C::redoContinues() const { return canRedo() && history_->redoContinues(); }

unsigned long ViewZNT4C::getHistoryPosition() const {
  takeBackIfDue();
  return history_->getPosition();
}

bool ViewZNT4C::isContinuation(unsigned long position) const { return history_->isContinuation(position); }

bool ViewZNT4C::undo() {
  if (isBusy() || grouping_ || !canUndo()) return bip();
  goOver(&EditHistoryC::undo);
  return true;
}

bool ViewZNT4C::redo() {
  if (isBusy() || grouping_ || !canRedo()) return bip();
  goOver(&EditHistoryC::redo);
  return true;
}

// The step is announced like an edit, so that it is taken back when it is cut short.
void ViewZNT4C::goOver(SelectionPathS const& (EditHistoryC::*step)(Node4C& root)) {
  EventC guard(*this);
  history_->beginStep(*root_, selection_);
  selection_ = selectionAt(*root_, (*history_.*step)(*root_));
  history_->dropStep();
  needLayout();
  guard.finish();
}

// The step starts here and not with the first edit, so that undoing it restores the selection before the
// group.
void ViewZNT4C::beginGroup() {
  if (isBusy() || grouping_) return;
  takeBackIfDue();
  announceEdit();
  grouping_ = true;
}

void ViewZNT4C::restartGroup() {
  if (isBusy() || !grouping_ || !history_->isStepOpen()) return;
  EventC guard(*this);
  selection_ = selectionAt(*root_, history_->restartStep(*root_, selection_));
  needLayout();
  guard.finish();
}

bool ViewZNT4C::endGroup() {
  if (isBusy() || !grouping_) return bip();
  EventC guard(*this);
  grouping_ = false;
  history_->markTyping(false);
  bool const kept = settleEdit();
  guard.finish();
  return kept;
}

void ViewZNT4C::cancelGroup() {
  if (isBusy() || !grouping_) return;
  grouping_ = false;
  if (!history_->isStepOpen()) return;
  takeBackDue_ = true;
  needRedraw();
}

// When the edit belongs to a group that continues, the group keeps its beginning.
void ViewZNT4C::takeBack() const {
  takeOver(*history_->stateBeforeStep());
  takeBackDue_ = false;
  if (!grouping_) history_->dropStep();
}

}  // namespace zolt::math::ved
