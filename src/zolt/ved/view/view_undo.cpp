#include "zolt/ved/view/edit_history.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::canUndo() const { return editable_ && history_->canUndo(); }

bool ViewZNT4C::canRedo() const { return editable_ && history_->canRedo(); }

bool ViewZNT4C::undoContinues() const { return canUndo() && history_->undoContinues(); }

bool ViewZNT4C::redoContinues() const { return canRedo() && history_->redoContinues(); }

bool ViewZNT4C::undo() {
  if (executing_ || grouping_ || !canUndo()) return bip();
  takeOver(*history_->undo());
  return true;
}

bool ViewZNT4C::redo() {
  if (executing_ || grouping_ || !canRedo()) return bip();
  takeOver(*history_->redo());
  return true;
}

// The step starts here and not with the first edit: undoing it brings back the selection that the person had.
void ViewZNT4C::beginGroup() {
  if (executing_ || grouping_) return;
  grouping_ = true;
  if (!editable_) return;
  history_->beginStep(*root_, {caretNode_, caretPos_, anchorNode_, anchorPos_});
  if (constraints_) backup_ = new EditBackupC(true, root_, caretNode_, caretPos_, anchorNode_, anchorPos_);
}

bool ViewZNT4C::endGroup() {
  if (executing_ || !grouping_) return bip();
  grouping_ = false;
  executing_ = true;
  history_->markTyping(false);
  bool const kept = settleEdit();
  finishEvent();
  return kept;
}

void ViewZNT4C::cancelGroup() {
  if (executing_ || !grouping_) return;
  grouping_ = false;
  if (history_->isStepOpen()) takeOver(*history_->stateBeforeStep());
  dropStep();
  backup_.reset();
}

void ViewZNT4C::recordStep() { history_->endStep(*root_, {caretNode_, caretPos_, anchorNode_, anchorPos_}); }

void ViewZNT4C::dropStep() { history_->dropStep(); }

}  // namespace zolt::math::ved
