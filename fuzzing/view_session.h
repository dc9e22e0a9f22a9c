#pragma once

#include <string>
#include <vector>

#include "fuzzing/script_player.h"
#include "fuzzing/trip.h"
#include "zolt/script/event_script.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/view/view.h"

namespace zolt::fuzz {

/// A view and a user who does anything to it, checked after every event.
///
/// Script steps mean what they say. Of the options, which only fields have, the first switches constraints on
/// for the next formula shown, the second begins (on) or ends a group, and all others cancel one. Members
/// return the first promise that is not kept, or an empty text.
class ViewSessionC {
 public:
  ViewSessionC();

  std::string play(field::ScriptStepS const& step);
  std::string play(field::EventScriptT const& script);
  /// Ends the session: everything is undone and redone, and the formula as a whole is checked.
  std::string finish();

  math::ved::ViewZNT4C& refView() { return view_; }
  wstring notation() const;

 private:
  /// The states around one step of the history; for some steps only the tree is known.
  struct StepS {
    wstring before;
    wstring after;
    bytestring treeBefore;
    bytestring treeAfter;
    bool onlyTree;
  };

  bool perform(field::ScriptStepS const& step);
  bool paste(bytestring const& bytes);
  bool showTree(wstring const& notation);
  void show(PointerTC<AlgebraicExpressionC> const& expression);
  void set(field::ScriptStepS const& step);
  void endGroup(bool keep);
  std::string checkHistory(field::ScriptStepS const& step, bool answer, wstring const& before,
                           bytestring const& treeBefore);
  /// Checks the tree again; its picture is compared only when it has changed.
  std::string checkState();
  /// One event may double the formula.
  bool isTooLarge();

  PointerTC<surfaces::RecordingGraphicsC> graphics_;
  math::ved::ViewZNT4C view_;
  ScriptPlayerC player_;
  bool constrained_ = false;
  bool grouping_ = false;
  bytestring groupStart_;
  bytestring tree_;  // when it was last looked at
  bytestring start_;
  std::vector<StepS> steps_;
  std::size_t done_ = 0;
};

}  // namespace zolt::fuzz
