#pragma once

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/common/read_error.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using math::common::ReadErrorS;
using oss::PointerTC;
using oss::wstring;

// Expressions as people write them in one line: (a+b)/2, 2x², sin(30°), int(0,1,x^2,x). docs/plain-text.md
// describes the notation. Reading and writing take linear time and do not recurse.

/// The expression that `text` means. Sums and products are binary. Brackets that only group leave no trace; a
/// doubled pair, "((x))", is a pair that the formula shows. Null when the text is malformed; `*error` (may be
/// null) then says where and why. Otherwise `*error` is untouched.
[[nodiscard]] PointerTC<AlgebraicExpressionC> fromPlainText(wstring const& text,
                                                            PointerTC<CASSessionBC> session,
                                                            ReadErrorS* error = nullptr);

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
