#pragma once

#include <utility>

#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

/// Holds a view still as long as it lives: calls that would change it are refused, and it does not lay out.
/// The view does so itself while it measures and draws; whoever else asks the surface about nodes of the view
/// needs one, since a surface is code of the host's.
///
/// What such code may do while the view calls it:
///
/// | called | ask the view | change the view | throw |
/// |---|---|---|---|
/// | `GraphicsABC::invalidate` | yes; `display` waits for the end of an event | refused | no |
/// | all else of `GraphicsABC`, an operator's layout and drawing | yes; sizes are old, `display` does nothing
/// | refused | yes | | `ConstraintsBC::check` | yes; sizes are old, `display` waits | refused | yes: no edit
/// | | `OperatorBC::runOperator` | yes; the same | through `ViewInsertionC` only | yes: no edit | |
/// `ClipboardABC` of a field | yes | yes | yes |
///
/// None may destroy the view, nor the field that owns it; builds that check trees stop there.
class ViewHoldC {
 public:
  explicit ViewHoldC(ViewZNT4C const& view) : view_(view), before_(std::exchange(view.held_, true)) {}
  ~ViewHoldC() { view_.held_ = before_; }
  ViewHoldC(ViewHoldC const&) = delete;
  ViewHoldC& operator=(ViewHoldC const&) = delete;

 private:
  ViewZNT4C const& view_;
  bool before_;
};

}  // namespace zolt::math::ved
