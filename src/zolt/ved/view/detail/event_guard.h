// Internal to the view: one event.
#pragma once

#include "zolt/ved/view/edit_history.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

/// An event while it lasts. One that goes before `finish` was called has been cut short, which happens where
/// memory runs out: what it changed is taken back.
class ViewZNT4C::EventC {
 public:
  explicit EventC(ViewZNT4C& view);
  ~EventC();
  EventC(EventC const&) = delete;
  EventC& operator=(EventC const&) = delete;

  /// Makes up for a repaint that came too early.
  void finish();

 private:
  ViewZNT4C& view_;
  bool finished_ = false;
  // Where nothing but these was changed, the history has no step to go back by.
  SelectionS selection_;
  bool penDown_;
};

}  // namespace zolt::math::ved
