#pragma once

#include <vector>

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class Node4C;
class OperatorListC;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field {

using math::ved::PlaceS;
using oss::wstring;

/// A formula in the words in which a screen reader reads it aloud: "x = fraction 1 over 2 end fraction".
/// Signs that speech programs do not know are written as words, and an empty slot is "empty".
struct ReadableTextS {
  /// A place of the caret, and where it is in the text.
  struct MarkS {
    PlaceS place;
    unsigned long offset = 0;  ///< counted in 16-bit characters of `text`
  };

  wstring text;
  /// Every caret place in reading order; offsets never decrease.
  std::vector<MarkS> marks;

  /// The offset of the place; the text's length when the place is not in the formula.
  unsigned long offsetOf(PlaceS place) const;
  /// The last place at or before `offset`.
  PlaceS placeAt(unsigned long offset) const;
  /// The first place after `offset`; null when there is none.
  PlaceS placeAfter(unsigned long offset) const;
};

/// The result is valid until the next edit, as places are.
ReadableTextS makeReadableText(math::ved::ViewZNT4C const& view);
/// The same for a tree, whose root or row this is, with the operators that it was made with.
ReadableTextS makeReadableText(math::ved::Node4C const& tree, math::ved::OperatorListC const& operators);

}  // namespace zolt::field
