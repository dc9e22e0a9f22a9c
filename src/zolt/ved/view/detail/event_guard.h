// Internal to the view: one event.
#pragma once

#include "zolt/ved/view/edit_history.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

/// Lives as long as one event. An event that is destroyed before `finish` was called was cut short, as
/// happens when memory runs out; the destructor then takes back its changes.
class ViewZNT4C::EventC {
 public:
  explicit EventC(ViewZNT4C& view);
  ~EventC();
  EventC(EventC const&) = delete;
  EventC& operator=(EventC const&) = delete;

  /// Ends the event, and repeats a repaint that came too early.
  void finish();
  /// From now on the event is at an end but for the question whether it is kept, and the view may be lost.
  void letViewGo() { mayLoseView_ = true; }
  bool mayLoseView() const { return mayLoseView_; }
  /// The view was destroyed: there is nothing to end and nothing to take back.
  void loseView() { finished_ = true; }
  bool hasLostView() const { return finished_; }

 private:
  ViewZNT4C& view_;
  bool finished_ = false;
  bool mayLoseView_ = false;
  // These are kept here, since the history has no step when only they change.
  SelectionS selection_;
  bool penDown_;
};

}  // namespace zolt::math::ved
