#include "zolt/ved/view/edit_history.h"

#include <iterator>

#include "zolt/ved/view/detail/byte_delta.h"

namespace zolt::math::ved {

unsigned long EditHistoryC::StepS::byteSize() const {
  return sizeof(StepS) + tree.capacity() + placesBefore.capacity() + placesAfter.capacity();
}

void EditHistoryC::clear() {
  steps_.clear();
  next_ = 0;
  bytes_ = 0;
  open_ = false;
  tree_.clear();
  recorder_.clear();
}

void EditHistoryC::beginStep(Node4C const& root, EditPlacesS const& places) {
  if (open_) return;
  if (tree_.empty()) tree_ = recorder_.recordTree(root);
  placesBefore_ = TreeRecorderC::recordPlaces(places);
  typing_ = false;
  open_ = true;
}

PointerTC<EditBackupC> EditHistoryC::stateBeforeStep() const {
  return recorder_.restore(tree_, placesBefore_);
}

void EditHistoryC::endStep(Node4C const& root, EditPlacesS const& places) {
  if (!open_) return;
  oss::bytestring tree = recorder_.recordTree(root);
  if (tree == tree_) {
    open_ = false;
    return;
  }

  // What asks for memory comes first: when there is none, the history is as it was and the step still open.
  StepS step;
  step.tree = makeDelta(tree_, tree);
  step.placesAfter = makeDelta(placesBefore_, TreeRecorderC::recordPlaces(places));
  if (typing_ && next_ > 0) {
    StepS const& last = steps_[next_ - 1];
    step.continues = last.typing && applyDelta(last.placesBefore, last.placesAfter, false) == placesBefore_;
  }
  step.typing = typing_;
  steps_.emplace_back();
  step.placesBefore = std::move(placesBefore_);
  tree_ = std::move(tree);
  forgetRedo();
  bytes_ += step.byteSize();
  steps_.back() = std::move(step);
  next_ = steps_.size();
  trim();
  open_ = false;
}

/// All behind the place of the new step but the last, which is to become it.
void EditHistoryC::forgetRedo() {
  auto const first = steps_.begin() + static_cast<std::ptrdiff_t>(next_);
  auto const last = std::prev(steps_.end());
  for (auto step = first; step != last; ++step) bytes_ -= step->byteSize();
  steps_.erase(first, last);
}

void EditHistoryC::trim() {
  while (steps_.size() > 1 && (steps_.size() > maxSteps_ || bytes_ > maxBytes_)) {
    bytes_ -= steps_.front().byteSize();
    steps_.pop_front();
    --next_;
  }
  steps_.front().continues = false;
}

PointerTC<EditBackupC> EditHistoryC::undo() {
  if (!canUndo() || open_) return nullptr;
  StepS const& step = steps_[next_ - 1];
  return moveTo(next_ - 1, applyDelta(tree_, step.tree, true), step.placesBefore);
}

PointerTC<EditBackupC> EditHistoryC::redo() {
  if (!canRedo() || open_) return nullptr;
  StepS const& step = steps_[next_];
  return moveTo(next_ + 1, applyDelta(tree_, step.tree, false),
                applyDelta(step.placesBefore, step.placesAfter, false));
}

PointerTC<EditBackupC> EditHistoryC::moveTo(unsigned long next, oss::bytestring tree,
                                            oss::bytestring const& places) {
  auto state = recorder_.restore(tree, places);
  tree_ = std::move(tree);
  next_ = next;
  return state;
}

}  // namespace zolt::math::ved
