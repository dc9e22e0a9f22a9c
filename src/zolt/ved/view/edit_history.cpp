#include "zolt/ved/view/edit_history.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/edit_backup.h"

namespace zolt::math::ved {

namespace {

/// Brings a tree in order in which no caret stands: normalisation would move one from one side of a supplied
/// bracket to the other.
void normalise(Node4C& root) {
  Node4C* noNode = nullptr;
  unsigned noPos = 0;
  root.checkTree(noNode, noPos, noNode, noPos);
}

}  // namespace

EditPathC::EditPathC(Node4C const* node, unsigned int pos) : place_(node != nullptr), pos_(pos) {
  if (!node) return;
  for (; node->getParent(); node = node->getParent()) {
    path_.push_back(static_cast<std::uint32_t>(node->findChildNumber()));
  }
  std::reverse(path_.begin(), path_.end());
}

Node4C* EditPathC::find(Node4C* root) const {
  if (!place_) return nullptr;
  Node4C* node = root;
  for (std::uint32_t const i : path_) node = node->child(i);
  return node;
}

void EditHistoryC::beginStep(Node4C const& root, EditPlacesS const& places) {
  if (open_) return;
  tree_ = root.makeRecord();
  before_ = EditPathsS(places);
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
  normalise(*root);
  Node4C* const caret = before_.caret.find(root.get());
  Node4C* const anchor = before_.anchor.find(root.get());
  return new EditBackupC(false, root.release(), caret, before_.caret.getPos(), anchor,
                         before_.anchor.getPos());
}

void EditHistoryC::endStep(Node4C const& root, EditPlacesS const& places) {
  if (!open_) return;
  // What asks for memory comes first: when there is none, the history is as it was and the step still open.
  StepS step;
  step.patches = findPatches(*tree_, *root.makeRecord());
  if (step.patches.empty()) {
    dropStep();
    return;
  }
  step.after = EditPathsS(places);
  step.typing = typing_;
  if (typing_ && next_ > 0) {
    StepS const& last = steps_[next_ - 1];
    step.continues = last.typing && last.after == before_;
  }
  steps_.emplace_back();
  step.before = std::move(before_);
  step.size = sizeof(StepS) + step.before.getSize() + step.after.getSize();
  for (RecordPatchS const& patch : step.patches) step.size += patch.getSize();
  forgetRedo();
  bytes_ += step.size;
  steps_.back() = std::move(step);
  next_ = steps_.size();
  trim();
  dropStep();
}

/// All behind the place of the new step but the last, which is to become it.
void EditHistoryC::forgetRedo() {
  auto const first = steps_.begin() + static_cast<std::ptrdiff_t>(next_);
  auto const last = std::prev(steps_.end());
  for (auto step = first; step != last; ++step) bytes_ -= step->size;
  steps_.erase(first, last);
}

void EditHistoryC::trim() {
  while (steps_.size() > 1 && (steps_.size() > maxSteps_ || bytes_ > maxBytes_)) {
    bytes_ -= steps_.front().size;
    steps_.pop_front();
    --next_;
    ++forgotten_;
  }
  steps_.front().continues = false;
}

EditPathsS const& EditHistoryC::undo(Node4C& root) {
  StepS const& step = steps_[next_ - 1];
  root.apply(step.patches, true);
  normalise(root);
  --next_;
  return step.before;
}

EditPathsS const& EditHistoryC::redo(Node4C& root) {
  StepS const& step = steps_[next_];
  root.apply(step.patches, false);
  normalise(root);
  ++next_;
  return step.after;
}

}  // namespace zolt::math::ved
