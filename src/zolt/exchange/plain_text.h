#pragma once

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using oss::PointerTC;
using oss::wstring;

// Expressions as people write them in one line: (a+b)/2, 2x², sin(30°), int(0,1,x^2,x). docs/plain-text.md
// describes the notation. Reading and writing take linear time and do not recurse.

/// Why plain text was refused.
enum PlainTextErrorE {
  PLAIN_TEXT_ERROR_NONE = 0,
  PLAIN_TEXT_ERROR_EMPTY,              ///< blanks only
  PLAIN_TEXT_ERROR_BAD_CHARACTER,      ///< a character without a meaning in the notation
  PLAIN_TEXT_ERROR_BAD_NUMBER,         ///< 1.2.3
  PLAIN_TEXT_ERROR_BAD_NAME,           ///< a quoted name that no expression can hold
  PLAIN_TEXT_ERROR_MISSING_OPERAND,    ///< a+, (), f(,x)
  PLAIN_TEXT_ERROR_MISSING_OPERATOR,   ///< 2 3, a not b
  PLAIN_TEXT_ERROR_MISSING_ARGUMENTS,  ///< sin+1
  PLAIN_TEXT_ERROR_ARGUMENT_COUNT,     ///< sin(x,y)
  PLAIN_TEXT_ERROR_MISSING_CLOSE,      ///< (a, |a, (a], "a
  PLAIN_TEXT_ERROR_UNEXPECTED_CLOSE,   ///< a)
  PLAIN_TEXT_ERROR_UNEXPECTED_COMMA,   ///< a,b
  PLAIN_TEXT_ERROR_SECOND_ASSIGNMENT   ///< a := b := c
};

struct PlainTextErrorS {
  /// The range of the offending 16-bit characters; both ends are the text's length when the text ends too
  /// early.
  unsigned long begin = 0;
  unsigned long end = 0;
  PlainTextErrorE cause = PLAIN_TEXT_ERROR_NONE;
};

/// One sentence for the person who wrote the text, without a full stop: "An operand is missing".
wstring describe(PlainTextErrorE cause);

/// The expression that `text` means. Sums and products are binary. Brackets that only group leave no trace; a
/// doubled pair, "((x))", is a pair that the formula shows. Null when the text is malformed; `*error` (may be
/// null) then says where and why. Otherwise `*error` is untouched.
[[nodiscard]] PointerTC<AlgebraicExpressionC> fromPlainText(wstring const& text,
                                                            PointerTC<CASSessionBC> session,
                                                            PlainTextErrorS* error = nullptr);

enum PlainTextStyleE {
  /// The text of every expression reads back to an equal expression.
  PLAIN_TEXT_EXACT,
  /// The text is for people and other programs: brackets that the formula shows are written once, so reading
  /// back loses those that are not needed.
  PLAIN_TEXT_READABLE
};

/// The expression with as few brackets as the notation allows and with every digit. Empty for the empty
/// expression.
wstring toPlainText(AlgebraicExpressionC const& expression, PlainTextStyleE style = PLAIN_TEXT_EXACT);

}  // namespace zolt::exchange
