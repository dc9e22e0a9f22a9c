#pragma once

#include <optional>

#include "zolt/exchange/speech.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/tree_path.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using exchange::SpeechStyleS;
using oss::wstring;

/// What a listener hears after a move of the caret.
struct SpokenMoveS {
  wstring said;  ///< "into the denominator", "empty exponent", "end of root", "x", "x plus selected"
  /// Whether it is about where the caret is, which the events of a text field do not tell.
  bool isPlace = false;
};

/// How the words of a formula (`makeReadableText`) have changed: from `offset` on, `removed` gave way to
/// `inserted`.
struct SpokenEditS {
  unsigned long offset = 0;
  wstring removed;
  wstring inserted;
  wstring said;          ///< what a listener hears: "x", "plus 1 deleted", "fraction, empty denominator"
  bool isPlace = false;  ///< as of a move
};

/// Tells a listener what a person does in a view: where the caret goes, what is selected, typed and deleted.
/// It remembers the formula, and compares.
class CaretSpeechC {
 public:
  explicit CaretSpeechC(SpeechStyleS style = {}) : style_(style) {}

  SpeechStyleS getStyle() const { return style_; }
  /// Whether it has a formula to compare with. Without one, `tellMove` and `tellEdit` say nothing.
  bool isListening() const { return words_.has_value(); }
  void listen(math::ved::ViewZNT4C const& view);
  /// The formula is what it was, the caret or the selection perhaps not. It costs what it says.
  SpokenMoveS tellMove(math::ved::ViewZNT4C const& view);
  /// The formula has changed. It costs as much as all the words of the formula.
  SpokenEditS tellEdit(math::ved::ViewZNT4C const& view);

 private:
  SpeechStyleS style_;
  math::ved::SelectionPathS selection_;
  std::optional<wstring> words_;
};

}  // namespace zolt::field
