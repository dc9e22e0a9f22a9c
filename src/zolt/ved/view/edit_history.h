#pragma once

#include <deque>

#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/view/detail/tree_record.h"
#include "zolt/ved/view/edit_backup.h"

namespace zolt::math::ved {

/// The steps that can be undone and redone.
///
/// An edit is announced before it changes the tree and recorded after the tree is normal again; a step keeps
/// only the difference, and the places of caret and anchor as paths. The tree as it was last recorded is kept
/// too, so that each edit is written out once. Past the limits the oldest steps are forgotten, but never the
/// newest one. The history never points into the tree.
class EditHistoryC {
 public:
  explicit EditHistoryC(unsigned long maxSteps = limits::max_history_steps,
                        unsigned long maxBytes = limits::max_history_bytes)
      : maxSteps_(maxSteps), maxBytes_(maxBytes) {}

  /// Forgets all steps, and the tree: the next edit starts from whatever tree it is announced with.
  void clear();

  /// Announces an edit; until the step ends, further announcements are ignored.
  void beginStep(Node4C const& root, EditPlacesS const& places);
  bool isStepOpen() const { return open_; }
  /// Whether the announced edit is a typed character.
  void markTyping(bool typing) { typing_ = typing; }
  /// The state at the announcement of the edit that is under way; a new tree each time.
  PointerTC<EditBackupC> stateBeforeStep() const;
  /// Records the announced edit as a step, which ends what could be redone. An edit that left the tree as it
  /// was leaves no step. Ignored when none was announced.
  void endStep(Node4C const& root, EditPlacesS const& places);
  /// The announced edit did not happen: the tree is again as it was.
  void dropStep() { open_ = false; }

  bool canUndo() const { return next_ > 0; }
  bool canRedo() const { return next_ < steps_.size(); }
  bool undoContinues() const { return canUndo() && steps_[next_ - 1].continues; }
  bool redoContinues() const { return canRedo() && steps_[next_].continues; }
  /// The state before the last step (after the next one); null when there is none. The history has moved
  /// there when this returns.
  PointerTC<EditBackupC> undo();
  PointerTC<EditBackupC> redo();

  /// What the steps take, for limits and for tests.
  unsigned long byteSize() const { return bytes_; }

 private:
  struct StepS {
    oss::bytestring tree;          // a delta
    oss::bytestring placesBefore;  // in full
    oss::bytestring placesAfter;   // a delta on `placesBefore`
    bool typing = false;
    bool continues = false;  // a typed character directly behind the one before

    unsigned long byteSize() const;
  };

  PointerTC<EditBackupC> moveTo(unsigned long next, oss::bytestring tree, oss::bytestring const& places);
  void forgetRedo();
  void trim();

  unsigned long maxSteps_;
  unsigned long maxBytes_;
  TreeRecorderC recorder_;
  oss::bytestring tree_;  // as last recorded; empty: not known
  std::deque<StepS> steps_;
  unsigned long next_ = 0;  // steps before it are done, the others undone
  unsigned long bytes_ = 0;
  bool open_ = false;
  bool typing_ = false;
  oss::bytestring placesBefore_;
};

}  // namespace zolt::math::ved
