#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;
using math::ved::SelectionS;
using oss::wstring;

/// What is around the caret in its row, as input methods want to know it: texts as they are, brackets, and
/// one `construct_sign` for each other item, so that each position in the text is one place of the caret.
struct SurroundingTextS {
  /// The "object replacement character", which input methods take for something that is no text.
  static constexpr char16_t construct_sign = u'\uFFFC';

  wstring text;
  // The two ends of the selection as positions in the text; equal when nothing is selected.
  unsigned long anchor = 0;
  unsigned long caret = 0;

  wstring before() const { return text.substr(0, caret); }
  wstring after() const { return text.substr(caret); }
};

/// The text around the caret, at most `reach` characters on either side, and no more work than that. Of a
/// selection that ends farther away, or in another row, the anchor is where the text ends.
SurroundingTextS makeSurroundingText(math::ved::ViewZNT4C const& view, unsigned long reach);

/// The place so many characters of that text after (negative: before) `from`; the end of the row where it has
/// fewer.
PlaceS placeAtDistance(PlaceS from, long count);

}  // namespace zolt::field
