#pragma once

#include <utility>

#include "zolt/field/formula_field.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field {

/// Lives as long as one call from the host: records it, unless another recorded call makes it, and does what
/// every input needs before and after it.
class FormulaFieldC::ActC {
 public:
  enum KeepE { KEEP_NOTHING, KEEP_COLUMN, KEEP_GROWTH, KEEP_COMPLETION };

  ActC(FormulaFieldC& field, ScriptStepS step, KeepE keep = KEEP_NOTHING)
      : field_(field), count_(field.acts_) {
    if (field_.acts_ == 1) begin(std::move(step), keep);
  }
  ~ActC() {
    if (field_.acts_ == 1) field_.reveal_ = true;
  }
  ActC(ActC const&) = delete;
  ActC& operator=(ActC const&) = delete;

  /// Input does not replace a faulty part that was selected to show it.
  void dropMark() {
    if (!std::exchange(field_.markDue_, false)) return;
    mark_ = pathOf(field_.view_.getSelection());
    field_.placeCaret(inOneRow(field_.view_.getSelection()).caret);
  }
  /// The input was refused: what `dropMark` changed is as before.
  void restoreMark() {
    if (mark_.caret.path.empty()) return;
    field_.restoreSelection(mark_);
    field_.marked_ = true;
  }

  /// Replaces the step of this call by a more exact one, if it is the last of the recording. A call is
  /// recorded when it begins, so that a recording also shows one that never returned.
  void recordAs(ScriptStepS step) {
    if (recordedAs_ > 0 && field_.recorded_ && field_.recorded_->size() == recordedAs_) {
      field_.recorded_->back() = std::move(step);
    }
  }

 private:
  /// Counts the acts that nest, also one that is cut short when it begins.
  struct CountS {
    explicit CountS(unsigned& counted) : count(counted) { ++count; }
    ~CountS() { --count; }
    unsigned& count;
  };

  void begin(ScriptStepS step, KeepE keep) {
    if (field_.recorded_) {
      field_.recorded_->push_back(std::move(step));
      recordedAs_ = field_.recorded_->size();
    }
    field_.endComposition();
    if (keep != KEEP_COMPLETION) field_.leaveCompletion();
    // After an event the view normalises only when a layout is pending, and that can move a caret beside a
    // supplied bracket. The result must not depend on when the host paints, so the layout is done here.
    field_.view_.getExpressionSize();
    field_.last_ = {};
    field_.bounds_.clear();
    field_.bars_.clear();
    field_.markDue_ = std::exchange(field_.marked_, false);
    field_.refusal_.cause = math::common::READ_ERROR_NONE;
    field_.view_.takeRejection();
    if (keep != KEEP_COLUMN) field_.column_ = no_column;
    if (keep != KEEP_GROWTH) field_.grown_.clear();
  }

  FormulaFieldC& field_;
  CountS const count_;
  math::ved::SelectionPathS mark_;
  std::size_t recordedAs_ = 0;  // the length of the recording with this step; 0: it is not recorded
};

/// All edits during its lifetime are one step to undo; groups may nest. A group that is destroyed without
/// `end`, as happens when memory runs out, has failed.
class FormulaFieldC::GroupC {
 public:
  explicit GroupC(FormulaFieldC& field) : field_(field) {
    if (field_.groups_ == 0) {
      field_.view_.beginGroup();
      field_.groupFailed_ = false;
    }
    ++field_.groups_;
  }
  ~GroupC() {
    if (!ended_) end(false);
  }
  GroupC(GroupC const&) = delete;
  GroupC& operator=(GroupC const&) = delete;

  /// Ends the group. When it or a group inside it failed, the answer is false, and the outermost group
  /// restores everything to what it was before.
  bool end(bool succeeded) {
    ended_ = true;
    if (!succeeded) field_.groupFailed_ = true;
    if (--field_.groups_ > 0) return succeeded;
    if (!field_.groupFailed_) return field_.view_.endGroup();
    field_.view_.cancelGroup();
    return false;
  }

 private:
  FormulaFieldC& field_;
  bool ended_ = false;
};

}  // namespace zolt::field
