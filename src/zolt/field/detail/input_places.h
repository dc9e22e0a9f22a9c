#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::field::detail {

using math::ved::PlaceS;
using oss::wstring;

// Where typed signs lead that end an exponent, a fraction or a construct. A place counts as the end of a row
// only when nothing is behind it, so that a sign typed in the middle stays where it is typed.

/// A place to go to before a sign is typed, or instead of it.
struct LeavingS {
  PlaceS target;          ///< null: the sign is typed where the caret is
  bool complete = false;  ///< going there is all that the sign is to do
};

/// ")": past the bracket that already closes the pair, else behind the construct that is written with
/// brackets, else out of exponents and fractions to a row with an open bracket.
LeavingS leaveByClose(PlaceS place);

/// ",": to the construct's next argument, or out to a row with an open bracket.
LeavingS leaveByComma(PlaceS place);

/// "=" in a construct that shows one between two of its rows: to the second of them; null elsewhere.
PlaceS goToValue(PlaceS place);

/// " ": behind the exponent or the denominator that ends here; null: it is a blank.
PlaceS leaveByBlank(PlaceS place);

/// "=", "<", …: behind all exponents and fractions that end here; null: none does.
PlaceS leaveByRelation(PlaceS place);

/// "|", "⌋", …: after the construct that the sign closes when a filled row of it ends here; null elsewhere.
PlaceS leaveByClosingSign(PlaceS place, char16_t sign);

/// Whether the place is in an exponent whose next operand is still to come: what is raised there joins it.
bool isRaising(PlaceS place);

/// Whether a name ends at the place, so that letters put there would change it.
bool endsNameAt(PlaceS place);

/// Whether an operand ends at the place: a name, a number, a construct or a closing bracket stands before it.
bool endsOperandAt(PlaceS place);

/// Whether a "," stands between two places of one row, outside brackets.
bool hasComma(PlaceS begin, PlaceS end);

}  // namespace zolt::field::detail
