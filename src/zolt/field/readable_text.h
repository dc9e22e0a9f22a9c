#pragma once

#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/exchange/speech.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class Node4C;
class OperatorListC;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field {

using exchange::SpeechStyleS;
using math::ved::PlaceS;
using math::ved::SelectionS;
using oss::wstring;

/// A formula, complete or not, in the words in which a screen reader reads it aloud: "x equals the fraction
/// with numerator 1, denominator x plus 1, end fraction". An empty slot is "empty". docs/speech.md says what
/// is said when.
struct ReadableTextS {
  /// A place of the caret, and where it is in the text.
  struct MarkS {
    PlaceS place;
    unsigned long offset = 0;  ///< counted in 16-bit characters of `text`
  };

  wstring text;
  /// Every caret place in reading order; offsets never decrease. Between two words a place is at the second.
  std::vector<MarkS> marks;

  /// The offset of the place; the text's length when the place is not in the formula.
  unsigned long offsetOf(PlaceS place) const;
  /// The last place at or before `offset`.
  PlaceS placeAt(unsigned long offset) const;
  /// The first place after `offset`; null when there is none.
  PlaceS placeAfter(unsigned long offset) const;
};

/// The result is valid until the next edit, as places are.
ReadableTextS makeReadableText(math::ved::ViewZNT4C const& view, SpeechStyleS style = {});
/// The same for a tree, whose root or row this is, with the operators that it was made with.
ReadableTextS makeReadableText(math::ved::Node4C const& tree, math::ved::OperatorListC const& operators,
                               SpeechStyleS style = {});
/// The same for a stretch of a formula; of constructs that it reaches into, it has all.
ReadableTextS makeReadableText(SelectionS const& stretch, math::ved::OperatorListC const& operators,
                               SpeechStyleS style = {});

/// What is said for an expression as a formula shows it; empty for a null one.
wstring toSpeech(oss::PointerTC<math::algexpr::AlgebraicExpressionC> const& expression,
                 SpeechStyleS style = {});

}  // namespace zolt::field
