#pragma once

#include "zolt/field/input_options.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorBC;
class OperatorListC;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using math::ved::OperatorBC;
using math::ved::OperatorListC;
using math::ved::PlaceS;
using oss::PointerTC;
using oss::wstring;

// Where a typed sign takes the caret when it ends an exponent, a fraction or a construct. A place is the end
// of a row only when nothing comes after it, so that a sign typed in the middle stays where it is typed.

/// A place to which the caret moves before a sign is typed, or instead of typing it.
struct LeavingS {
  PlaceS target;          ///< null: the sign is typed where the caret is
  bool complete = false;  ///< the sign only moves the caret and is not typed
};

/// Where a sign leads: ")" and "," through the rows of a construct that is written with brackets, and out of
/// it; a relation, a sign between operands or a blank out of
/// finished exponents and fractions; and a sign that closes a construct out of it.
LeavingS leaveBySign(PlaceS place, char16_t sign, OperatorListC const& operators,
                     InputOptionsS const& options);

/// The place after the exponent or fraction whose last row ends at `place`, when no bracket in that row is
/// open; else null.
PlaceS afterFinishedItem(PlaceS place);

/// The end of the argument of a construct written with brackets that ends at the place, perhaps in exponents
/// and fractions at its end. Null elsewhere, and where a bracket is open.
PlaceS findEndedArgument(PlaceS place);

/// To the row that the construct around the place shows a sign before, when its row before that one ends here
/// and the sign is one of `signs`: "=" in a sum. Null elsewhere.
PlaceS leaveByValueSign(PlaceS place, wstring const& signs);

/// What `leaveBySign` is for an operator that is inserted by a sign: "∧" leaves as the word does, a bar as
/// "(".
PlaceS leaveByOperator(PlaceS place, OperatorBC const& op, OperatorListC const& operators,
                       InputOptionsS const& options);

/// The same for an operator that takes the place of typed signs, as "≠" that of "!=".
PlaceS leaveByReplacement(PlaceS place, OperatorBC const& op, InputOptionsS const& options);

/// What the construct before the place, which the sign has just ended, becomes together with the one
/// that is all it holds (`doubledName`); null: it stays.
PointerTC<math::ved::OperatorBC> findDoubled(PlaceS place, char16_t sign,
                                             math::ved::OperatorListC const& operators);

/// What a sign inserts in one of the constructs around the place (`insideSigns`).
struct InsideSignS {
  PointerTC<OperatorBC> op;  ///< null: nothing
  PlaceS target;  ///< where it does so, after exponents and fractions that end at the place; null: there
};
InsideSignS findByInsideSign(OperatorListC const& operators, PlaceS place, char16_t sign);

/// After the exponent or fraction whose last row ends here and is one pair of brackets and its content; null
/// elsewhere.
PlaceS afterGroup(PlaceS place);

/// Whether a character that is typed after a pair of brackets applies to the pair: "^", "!", "°", "ʳ", "²",
/// "%".
bool bindsToGroup(char16_t typed, OperatorListC const& operators);

/// Whether a stretch of several items begins with a sign of its own, as in "−(a)": the view takes a "/" over
/// it for one over the sign.
bool beginsWithSign(math::ved::SelectionS const& stretch, OperatorListC const& operators);

/// After the exponents and fractions at whose end a word between operands was typed, "and" in "1/x^2 and";
/// null when none ends at the place. `begin` is then where the word begins, with the blanks before it.
PlaceS leaveByWord(PlaceS place, OperatorListC const& operators, InputOptionsS const& options, PlaceS& begin);

/// "|", "⌋", …: after the construct that the sign closes when a filled row of it ends here, or in finished
/// exponents and fractions at its end; null elsewhere. A bar, which also opens, closes after an operand only.
PlaceS leaveByClosingSign(PlaceS place, char16_t sign, OperatorListC const& operators);

/// Whether the place is in an exponent that expects an operand, so that a raised character typed there joins
/// it.
bool isRaising(PlaceS place);

/// Whether the place is at the start of an exponent, perhaps in braces: the sign of an angle is all of it.
bool beginsExponent(PlaceS place);

/// Whether there is a "," outside brackets between two places of one row.
bool hasComma(PlaceS begin, PlaceS end);

}  // namespace zolt::field::detail
