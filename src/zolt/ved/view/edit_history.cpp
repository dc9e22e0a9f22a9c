#include "zolt/ved/view/edit_history.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/edit_backup.h"

namespace zolt::math::ved {

namespace {

std::size_t sizeOf(SelectionPathS const& places) {
  return (places.anchor.path.capacity() + places.caret.path.capacity()) * sizeof(unsigned long);
}

}  // namespace

void EditHistoryC::beginStep(Node4C const& root, SelectionS const& places) {
  if (open_) return;
  tree_ = root.makeRecord();
  before_ = pathOf(places);
  typing_ = false;
  open_ = true;
}

bool EditHistoryC::hasChanged(Node4C const& root) const { return root.makeRecord().get() != tree_.get(); }

void EditHistoryC::dropStep() {
  open_ = false;
  tree_ = {};
}

PointerTC<EditBackupC> EditHistoryC::stateBeforeStep() const {
  std::unique_ptr<Node4C> root = Node4C::fromRecord(*tree_);
  root->checkTree();
  auto const [anchor, caret] = selectionAt(*root, before_);
  return new EditBackupC(false, root.release(), const_cast<Node4C*>(caret.node), caret.pos,
                         const_cast<Node4C*>(anchor.node), anchor.pos);
}

void EditHistoryC::endStep(Node4C const& root, SelectionS const& places) {
  if (!open_) return;
  // Everything that allocates memory comes first: when it fails, the history is unchanged and the step is
  // still open.
  StepS step;
  step.state = root.makeRecord();
  auto const [differs, size] = compareStates(steps_.empty() ? *tree_ : stateBefore(next_), *step.state);
  if (!differs) {
    dropStep();
    return;
  }
  step.after = pathOf(places);
  step.typing = typing_;
  if (typing_ && next_ > 0) {
    StepS const& last = steps_[next_ - 1];
    step.continues = last.typing && last.after == before_;
  }
  if (steps_.empty()) first_ = tree_;
  steps_.emplace_back();
  step.before = std::move(before_);
  step.size = sizeof(StepS) + sizeOf(step.before) + sizeOf(step.after) + size;
  forgetRedo();
  bytes_ += step.size;
  steps_.back() = std::move(step);
  next_ = steps_.size();
  trim();
  dropStep();
}

/// Drops the steps after `next_`, except the last, into which the new step is moved.
void EditHistoryC::forgetRedo() {
  auto const first = steps_.begin() + static_cast<std::ptrdiff_t>(next_);
  auto const last = std::prev(steps_.end());
  for (auto step = first; step != last; ++step) bytes_ -= step->size;
  steps_.erase(first, last);
}

void EditHistoryC::trim() {
  while (steps_.size() > 1 && (steps_.size() > maxSteps_ || bytes_ > maxBytes_)) {
    bytes_ -= steps_.front().size;
    first_ = std::move(steps_.front().state);
    steps_.pop_front();
    --next_;
    ++forgotten_;
  }
  steps_.front().continues = false;
}

// The caret does not take part, since normalisation would move it to the other side of a supplied bracket.
void EditHistoryC::goTo(Node4C& root, unsigned long next) {
  root.turnInto(stateBefore(next));
  root.checkTree();
  next_ = next;
}

SelectionPathS const& EditHistoryC::undo(Node4C& root) {
  goTo(root, next_ - 1);
  return steps_[next_].before;
}

SelectionPathS const& EditHistoryC::redo(Node4C& root) {
  goTo(root, next_ + 1);
  return steps_[next_ - 1].after;
}

}  // namespace zolt::math::ved
