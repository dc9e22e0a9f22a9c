#include "zolt/ved/view/edit_history.h"

#include <algorithm>
#include <memory>
#include <utility>

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
  half_ = {};
}

PointerTC<EditBackupC> EditHistoryC::stateBeforeStep() const {
  std::unique_ptr<Node4C> root = Node4C::fromRecord(*tree_);
  root->checkTree();
  auto const [anchor, caret] = selectionAt(*root, before_);
  return new EditBackupC(false, root.release(), const_cast<Node4C*>(caret.node), caret.pos,
                         const_cast<Node4C*>(anchor.node), anchor.pos);
}

SelectionPathS const& EditHistoryC::restartStep(Node4C& root, SelectionS const& places) {
  StepS half;
  half.after = pathOf(places);
  half.state = root.makeRecord();
  root.turnInto(*tree_);
  root.checkTree();
  half_ = std::move(half);
  return before_;
}

bool EditHistoryC::complete(StepS& step, NodeRecordC const& before) {
  auto const [differs, size] = compareStates(before, *step.state);
  step.size = sizeof(StepS) + sizeOf(step.before) + sizeOf(step.after) + size;
  return differs;
}

void EditHistoryC::endStep(Node4C const& root, SelectionS const& places) {
  if (!open_) return;
  // Everything that allocates memory comes first: when it fails, the history is unchanged and the step is
  // still open.
  StepS step;
  step.state = root.makeRecord();
  step.before = half_.state ? half_.after : before_;
  step.after = pathOf(places);
  step.typing = typing_;
  NodeRecordC const& before = steps_.empty() ? *tree_ : stateBefore(next_);
  bool hasHalf = false;
  if (half_.state) {
    half_.before = before_;
    half_.typing = true;
    hasHalf = complete(half_, before) && complete(step, *half_.state);
    if (!hasHalf) step.before = before_;
  }
  if (!hasHalf && !complete(step, before)) {
    dropStep();
    return;
  }
  StepS& typed = hasHalf ? half_ : step;
  if (typed.typing && next_ > 0) {
    StepS const& last = steps_[next_ - 1];
    typed.continues = last.typing && last.after == before_;
  }
  if (steps_.empty()) first_ = tree_;
  std::size_t const numNew = hasHalf ? 2 : 1;
  steps_.resize(steps_.size() + numNew);
  forgetRedo(numNew);
  bytes_ += step.size + (hasHalf ? half_.size : 0);
  steps_.back() = std::move(step);
  if (hasHalf) steps_[next_] = std::move(half_);
  next_ = steps_.size();
  trim();
  dropStep();
}

/// Drops the steps after `next_`, except the last ones, which are for new steps.
void EditHistoryC::forgetRedo(std::size_t numNew) {
  auto const first = steps_.begin() + static_cast<std::ptrdiff_t>(next_);
  auto const last = steps_.end() - static_cast<std::ptrdiff_t>(numNew);
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
