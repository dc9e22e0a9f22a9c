#pragma once

#include <utility>

#include "zolt/field/formula_field.h"

namespace zolt::field {

/// One call of the host's while it lasts: recorded when it is not made by another one, and followed by what
/// every input is followed by.
class FormulaFieldC::ActC {
 public:
  enum KeepE { KEEP_NOTHING, KEEP_COLUMN, KEEP_GROWTH };

  ActC(FormulaFieldC& field, ScriptStepS step, KeepE keep = KEEP_NOTHING) : field_(field) {
    if (field_.acts_ == 0) begin(std::move(step), keep);
    ++field_.acts_;
  }
  ~ActC() {
    if (--field_.acts_ == 0) field_.reveal_ = true;
  }
  ActC(ActC const&) = delete;
  ActC& operator=(ActC const&) = delete;

  /// Whether the call is in the recording: it is from its beginning, for when it does not come to an end.
  bool isRecorded() const {
    return recordedAs_ > 0 && field_.recorded_ && field_.recorded_->size() == recordedAs_;
  }
  /// Tells what is recorded more exactly.
  void recordAs(ScriptStepS step) { field_.recorded_->back() = std::move(step); }

 private:
  void begin(ScriptStepS step, KeepE keep) {
    // The view tidies up after an event only what was not laid out before it, and that can move a caret
    // beside a supplied bracket: what a person sees must not depend on when the host paints.
    field_.view_.getExpressionSize();
    if (field_.recorded_) {
      field_.recorded_->push_back(std::move(step));
      recordedAs_ = field_.recorded_->size();
    }
    if (keep != KEEP_COLUMN) field_.column_ = no_column;
    if (keep != KEEP_GROWTH) field_.grown_.clear();
  }

  FormulaFieldC& field_;
  std::size_t recordedAs_ = 0;  // how many steps there were with this one; 0: it is not recorded
};

/// All edits while it lasts are one step; groups may nest. One that goes without `end`, which happens where
/// memory runs out, has failed.
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

  /// False, with everything as it was before the outermost group, when it or one inside failed.
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
