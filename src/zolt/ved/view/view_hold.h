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
/// | called | may ask the view | may change it | may throw |
/// |---|---|---|---|
/// | `GraphicsABC::invalidate` | yes (1) | refused | no |
/// | the rest of `GraphicsABC`; layout and drawing of an operator | yes (2) | refused | yes |
/// | `ConstraintsBC::check`, `explain` | yes (1, 2) | refused | yes: no edit |
/// | `OperatorBC::runOperator` | yes (1, 2) | by `ViewInsertionC` only | yes: no edit |
/// | `ClipboardABC` of a field | yes | yes | yes |
///
/// (1) `display` waits for the end of the event; elsewhere it does nothing. (2) Sizes are those of before.
///
/// `ConstraintsBC::check` may destroy a view that no field owns; that edit is refused. Nothing else
/// may destroy a view, and nothing a field; builds that check trees stop where it does.
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
