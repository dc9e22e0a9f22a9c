#include "zolt/ved/view/edit_history.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::canUndo() const { return editable_ && history_->canUndo(); }

bool ViewZNT4C::canRedo() const { return editable_ && history_->canRedo(); }

bool ViewZNT4C::undoContinues() const { return canUndo() && history_->undoContinues(); }

bool ViewZNT4C::redoContinues() const { return canRedo() && history_->redoContinues(); }

bool ViewZNT4C::undo() {
  if (executing_ || !canUndo()) return bip();
  takeOver(*history_->undo());
  return true;
}

bool ViewZNT4C::redo() {
  if (executing_ || !canRedo()) return bip();
  takeOver(*history_->redo());
  return true;
}

void ViewZNT4C::recordStep() { history_->endStep(*root_, {caretNode_, caretPos_, anchorNode_, anchorPos_}); }

void ViewZNT4C::dropStep() { history_->dropStep(); }

}  // namespace zolt::math::ved
