#pragma once

#include <deque>

#include "zolt/oss/pointer.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/tree/node_record.h"
#include "zolt/ved/tree/tree_path.h"

namespace zolt::math::ved {

class EditBackupC;
class Node4C;

/// The steps that can be undone and redone.
///
/// An edit is announced before it changes the tree and recorded after the tree is normal again. A step is the
/// state that it led to, with caret and selection before and after it; neighbouring states share the records
/// of what did not change, so that a step costs what it changed. Past the limits the oldest steps are
/// forgotten, but never the newest one. The history never points into the tree.
class EditHistoryC {
 public:
  explicit EditHistoryC(unsigned long maxSteps = limits::max_history_steps,
                        unsigned long maxBytes = limits::max_history_bytes)
      : maxSteps_(maxSteps), maxBytes_(maxBytes) {}

  /// Counts on from where `other` is (`getPosition`); for a history without steps.
  void countFrom(EditHistoryC const& other) { forgotten_ = other.getPosition(); }

  /// Announces an edit; until the step ends, further announcements are ignored.
  void beginStep(Node4C const& root, SelectionS const& places);
  [[nodiscard]] bool isStepOpen() const { return open_; }
  /// Whether the tree may be another one than at the announcement of the edit that is under way.
  [[nodiscard]] bool hasChanged(Node4C const& root) const;
  /// Whether the announced edit is a typed character.
  void markTyping(bool typing) { typing_ = typing; }
  /// The state at the announcement of the edit that is under way, as a new tree, whatever has become of the
  /// one that is edited.
  [[nodiscard]] PointerTC<EditBackupC> stateBeforeStep() const;
  /// Records the announced edit as a step, which ends what could be redone. An edit that left the tree as it
  /// was leaves no step. Ignored when none was announced. What `restartStep` kept becomes a step before it.
  void endStep(Node4C const& root, SelectionS const& places);
  /// Keeps the state that the edit under way has reached for a step of its own, as typed, and takes the tree
  /// back to the announcement; answers where caret and anchor were then. Once in an edit, which must be open.
  SelectionPathS const& restartStep(Node4C& root, SelectionS const& places);
  /// The announced edit did not happen: the tree is again as it was.
  void dropStep();

  [[nodiscard]] bool canUndo() const { return next_ > 0; }
  [[nodiscard]] bool canRedo() const { return next_ < steps_.size(); }
  [[nodiscard]] bool undoContinues() const { return canUndo() && steps_[next_ - 1].continues; }
  [[nodiscard]] bool redoContinues() const { return canRedo() && steps_[next_].continues; }
  /// The number of the step that is next: it counts all that were ever before it, forgotten ones too, so that
  /// a number stands for the same step as long as that can be gone over.
  [[nodiscard]] unsigned long getPosition() const { return forgotten_ + next_; }
  /// Whether step number `position` goes on with the typing of the one before.
  [[nodiscard]] bool isContinuation(unsigned long position) const {
    return position >= forgotten_ && position - forgotten_ < steps_.size() &&
           steps_[position - forgotten_].continues;
  }
  /// Takes the tree back over the last step (on over the next one) and normalises it; answers where caret and
  /// anchor were then. There must be such a step. When memory runs out the history is where it was, but the
  /// tree may be anything.
  SelectionPathS const& undo(Node4C& root);
  SelectionPathS const& redo(Node4C& root);

  /// What the steps take besides the tree as it is, in bytes, at most: each counts the records that are in
  /// only one of the two states around it.
  [[nodiscard]] unsigned long byteSize() const { return bytes_; }

 private:
  struct StepS {
    NodeRecordPointerC state;  // that it led to
    SelectionPathS before;
    SelectionPathS after;
    unsigned long size = 0;  // of what it holds for itself, whether it is done or undone
    bool typing = false;
    bool continues = false;  // a typed character directly after the one before
  };

  /// The state before step `i` of those that are kept.
  NodeRecordC const& stateBefore(unsigned long i) const { return i > 0 ? *steps_[i - 1].state : *first_; }
  void goTo(Node4C& root, unsigned long next);
  void forgetRedo(std::size_t numNew);
  /// What a state takes that comes after `before`; no value when it is the same. May run out of memory.
  static bool complete(StepS& step, NodeRecordC const& before);
  void trim();

  unsigned long maxSteps_;
  unsigned long maxBytes_;
  NodeRecordPointerC first_;  // the state before the first step
  std::deque<StepS> steps_;
  unsigned long next_ = 0;  // steps before it are done, the others undone
  unsigned long forgotten_ = 0;
  unsigned long bytes_ = 0;
  bool open_ = false;
  bool typing_ = false;
  NodeRecordPointerC tree_;  // before the step that is open
  SelectionPathS before_;
  StepS half_;  // of the edit that is open; without a state there is none
};

}  // namespace zolt::math::ved
