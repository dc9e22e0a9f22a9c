#include "zolt/ved/view/edit_history.h"

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
  open_ = true;
  typing_ = false;
  if (tree_.empty()) tree_ = recorder_.recordTree(root);
  placesBefore_ = TreeRecorderC::recordPlaces(places);
}

PointerTC<EditBackupC> EditHistoryC::stateBeforeStep() const {
  return recorder_.restore(tree_, placesBefore_);
}

void EditHistoryC::endStep(Node4C const& root, EditPlacesS const& places) {
  if (!open_) return;
  open_ = false;
  oss::bytestring tree = recorder_.recordTree(root);
  if (tree == tree_) return;

  StepS step;
  step.tree = makeDelta(tree_, tree);
  step.placesAfter = makeDelta(placesBefore_, TreeRecorderC::recordPlaces(places));
  forgetRedo();
  if (typing_ && !steps_.empty()) {
    StepS const& last = steps_.back();
    step.continues = last.typing && applyDelta(last.placesBefore, last.placesAfter, false) == placesBefore_;
  }
  step.typing = typing_;
  step.placesBefore = std::move(placesBefore_);
  tree_ = std::move(tree);
  bytes_ += step.byteSize();
  steps_.push_back(std::move(step));
  next_ = steps_.size();
  trim();
}

void EditHistoryC::forgetRedo() {
  while (steps_.size() > next_) {
    bytes_ -= steps_.back().byteSize();
    steps_.pop_back();
  }
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
  StepS const& step = steps_[--next_];
  tree_ = applyDelta(tree_, step.tree, true);
  return recorder_.restore(tree_, step.placesBefore);
}

PointerTC<EditBackupC> EditHistoryC::redo() {
  if (!canRedo() || open_) return nullptr;
  StepS const& step = steps_[next_++];
  tree_ = applyDelta(tree_, step.tree, false);
  return recorder_.restore(tree_, applyDelta(step.placesBefore, step.placesAfter, false));
}

}  // namespace zolt::math::ved
