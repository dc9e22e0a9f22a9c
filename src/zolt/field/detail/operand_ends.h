#pragma once

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

// What the text before a place ends with, by what was typed: a name, a number, an operand.

/// Whether a name ends at the place, so that letters inserted there would change it.
bool endsNameAt(PlaceS place);

/// Whether "_" ends at the place, so that an index comes next.
bool endsWithIndexSign(PlaceS place);

/// Whether an operand (a name, a number, a construct or a closing bracket) ends at the place.
bool endsOperandAt(PlaceS place);
/// The same when blanks may come between; and a word such as "and" is no operand.
bool endsOperandBefore(PlaceS place, OperatorListC const& operators);

/// Whether a blank is before the place, or a sign between operands, which needs none after it.
bool endsSignBetween(PlaceS place, OperatorListC const& operators);

/// Whether a number or a factorial ends at the place, so that "!" after it is a factorial.
bool endsCounted(PlaceS place);

/// The place before the blanks that end at the place.
PlaceS beforeBlanks(PlaceS place);

/// The linear operator whose text is the word between two places of one text, as "mod"; null: none.
PointerTC<OperatorBC> findWord(wstring const& text, unsigned int begin, unsigned int end,
                               OperatorListC const& operators);

/// Whether a sign that comes after its operand ends at the place.
bool isPostfixAt(PlaceS place, OperatorListC const& operators);

}  // namespace zolt::field::detail
