#pragma once

#include <string>

#include "tests/support/script_player.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/view/view.h"

namespace zolt::tests {

/// A view on the recording surface, with the standard operators, that is set up and read in tree notation.
class ViewStageC {
 public:
  ViewStageC();

  math::ved::ViewZNT4C& refView() { return view_; }
  surfaces::RecordingGraphicsC& refGraphics() { return *graphics_; }
  ScriptPlayerC& refPlayer() { return player_; }

  /// Puts up a normal tree with its caret and, perhaps, its selection. False when the text does not read or
  /// the view makes something else of the tree.
  bool setUp(wstring const& notation);
  /// The tree with caret and selection.
  wstring notation() const;
  wstring notationWithoutPlaces() const;
  /// The tree in the byte form of streams.
  oss::bytestring bytes() const;

  /// Plays a script, painting after each step as a host does. The last step's answer.
  bool play(EventScriptT const& script);

  /// Empty, or what is wrong with the tree, the caret or the selection.
  std::string findFault() const;

 private:
  oss::PointerTC<surfaces::RecordingGraphicsC> graphics_;
  math::ved::ViewZNT4C view_;
  ScriptPlayerC player_;
};

/// The byte form of a row or root.
oss::bytestring writeBytes(math::ved::Node4C const& node);

}  // namespace zolt::tests
