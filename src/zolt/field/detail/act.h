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
    if (field_.acts_++ > 0) return;
    if (field_.recorded_) field_.recorded_->push_back(std::move(step));
    if (keep != KEEP_COLUMN) field_.column_ = no_column;
    if (keep != KEEP_GROWTH) field_.grown_.clear();
  }
  ~ActC() {
    if (--field_.acts_ > 0) return;
    field_.reveal_ = true;
    // The view tidies up after an event only what was not laid out before it, and that can move a caret
    // beside a supplied bracket: what a person sees must not depend on when the host paints.
    field_.view_.getExpressionSize();
  }
  ActC(ActC const&) = delete;
  ActC& operator=(ActC const&) = delete;

 private:
  FormulaFieldC& field_;
};

inline ScriptStepS makeStep(ScriptWordE word, wstring text = {}) {
  ScriptStepS step;
  step.word = word;
  step.text = std::move(text);
  return step;
}

}  // namespace zolt::field
