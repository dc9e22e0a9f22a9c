#pragma once

#include "zolt/field/input_options.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::field::detail {

using math::ved::PlaceS;
using oss::wstring;

// Where a typed sign takes the caret when it ends an exponent, a fraction or a construct. A place is the end
// of a row only when nothing comes after it, so that a sign typed in the middle stays where it is typed.

/// A place to which the caret moves before a sign is typed, or instead of typing it.
struct LeavingS {
  PlaceS target;          ///< null: the sign is typed where the caret is
  bool complete = false;  ///< the sign only moves the caret and is not typed
};

/// Where a sign leads: ")" and "," through the rows of a construct that is written with brackets, and out of
/// it; "=" to the row that a construct shows it before; a relation or a blank out of finished exponents and
/// fractions; "+" and "−" out of finished exponents; and a sign that closes a construct out of it.
LeavingS leaveBySign(PlaceS place, char16_t sign, InputOptionsS const& options);

/// After the exponent or fraction whose last row ends here and is one pair of brackets and its content; null
/// elsewhere.
PlaceS afterGroup(PlaceS place);

/// Whether a character that is typed after a pair of brackets applies to the pair: "^", "!", "°", "²".
bool bindsToGroup(char16_t typed);

/// "|", "⌋", …: after the construct that the sign closes when a filled row of it ends here; null elsewhere.
PlaceS leaveByClosingSign(PlaceS place, char16_t sign);

/// Whether the place is in an exponent that expects an operand, so that a raised character typed there joins
/// it.
bool isRaising(PlaceS place);

/// Whether a name ends at the place, so that letters inserted there would change it.
bool endsNameAt(PlaceS place);

/// Whether an operand (a name, a number, a construct or a closing bracket) ends at the place.
bool endsOperandAt(PlaceS place);

/// Whether there is a "," outside brackets between two places of one row.
bool hasComma(PlaceS begin, PlaceS end);

}  // namespace zolt::field::detail
