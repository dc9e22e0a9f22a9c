#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::math::common {

/// Why a text, or a formula that a person edits, is no expression. Each reader reports some of these.
enum ReadErrorE {
  READ_ERROR_NONE = 0,
  READ_ERROR_EMPTY,              ///< blanks only, or an empty formula
  READ_ERROR_BAD_CHARACTER,      ///< a character without a meaning in the notation
  READ_ERROR_BAD_NUMBER,         ///< 1.2.3; in prefix text also a number with arguments; in a formula also
                                 ///< one that is too large
  READ_ERROR_BAD_NAME,           ///< a quoted name that no expression can hold
  READ_ERROR_MISSING_OPERAND,    ///< a+, (), f(,x)
  READ_ERROR_MISSING_OPERATOR,   ///< 2 3, a not b
  READ_ERROR_MISSING_ARGUMENTS,  ///< sin+1
  READ_ERROR_ARGUMENT_COUNT,     ///< sin(x,y)
  READ_ERROR_MISSING_CLOSE,      ///< (a, |a, (a], "a
  READ_ERROR_UNEXPECTED_CLOSE,   ///< a)
  READ_ERROR_UNEXPECTED_COMMA,   ///< a,b
  READ_ERROR_SECOND_ASSIGNMENT,  ///< a := b := c
  READ_ERROR_MISSING_COMMA,      ///< prefix text: an argument is followed by neither "," nor ")"
  READ_ERROR_TRAILING_TEXT,      ///< prefix text: something follows the whole expression
  READ_ERROR_EMPTY_SLOT,         ///< a place of a formula that is still to be filled in
  READ_ERROR_MISPLACED,          ///< something else is needed in this place of a formula
  READ_ERROR_NOT_ALLOWED,        ///< it is an expression, which the constraints reject
  READ_ERROR_UNKNOWN_COMMAND,    ///< LaTeX: `\\fracc`; the message names the nearest known command
  READ_ERROR_SECOND_SCRIPT,      ///< LaTeX: a^b^c, x_1_2
  READ_ERROR_BAD_BOUNDS,         ///< LaTeX: `\\sum_{k} k`, without "k = …" and an upper bound
  READ_ERROR_NO_DIFFERENTIAL,    ///< LaTeX: `\\int_0^1 x`
  READ_ERROR_NO_MEANING,         ///< LaTeX: `1+\\dots+n`, a known command that no expression can hold
  READ_ERROR_BAD_MARKUP,         ///< MathML: `<mi>x`; no XML, or text where elements belong
  READ_ERROR_UNKNOWN_ELEMENT,    ///< MathML: an element without a meaning, or in such a place
  READ_ERROR_TABLE_SIZE          ///< more cells than a table may have
};

/// What every reader reports of what it refuses: prefix text, plain text, a formula field. A reader that
/// succeeds leaves the record alone.
struct ReadErrorS {
  ReadErrorE cause = READ_ERROR_NONE;
  /// The range of the offending 16-bit characters of a text; both ends are the text's length when it ends too
  /// early. Both are 0 where no part is to blame, and of a formula, whose parts are places.
  unsigned long begin = 0;
  unsigned long end = 0;
  /// The cause as one English sentence for the person who wrote it, without a full stop: "An operand is
  /// missing". It calls the range "this".
  oss::wstring message = {};
};

/// The sentence about a fault in a text.
oss::wstring describe(ReadErrorE cause);

}  // namespace zolt::math::common
