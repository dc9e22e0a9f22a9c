#pragma once

#include <vector>

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;
using oss::wstring;

/// A formula in words, one after the other as it is read aloud, for screen readers: "x = fraction 1 over 2
/// end fraction". Signs that are spoken badly are words, empty places are "empty".
struct ReadableTextS {
  struct MarkS {
    PlaceS place;
    unsigned long offset = 0;  ///< in 16-bit characters of `text`
  };

  wstring text;
  /// Every place of the caret in reading order; offsets never decrease.
  std::vector<MarkS> marks;

  /// The place's offset; the text's length when it is no place of the formula.
  unsigned long offsetOf(PlaceS place) const;
  /// The last place at or before `offset`.
  PlaceS placeAt(unsigned long offset) const;
};

/// Good until the next edit, as places are.
ReadableTextS makeReadableText(math::ved::ViewZNT4C const& view);

}  // namespace zolt::field
