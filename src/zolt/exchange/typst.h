#pragma once

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using math::algexpr::AlgebraicExpressionC;
using oss::wstring;

/// The expression as in a textbook, for Typst, without the "$" around it. Empty for the empty expression.
/// Takes linear time and does not recurse.
wstring toTypst(AlgebraicExpressionC const& expression);

/// How Typst writes an operator that a host adds. A function of any number of arguments needs none of this:
/// without it, it is `"f"(x, y)`.
struct TypstOperatorS {
  wstring name;  ///< in expressions
  unsigned long arity;
  int precedence;  ///< that of the editor's operator (`ved::OperatorBC`), larger binds looser
  /// The whole form. "#1" is the first operand, "@1" the same in brackets when it binds looser than the
  /// operator: "@1 in @2", "binom(#1, #2)".
  wstring written;
};

/// Adds it for the whole process, for everything that is written from now on; the last one with a name and
/// number of operands wins. Call it before other threads write Typst.
void registerTypstOperator(TypstOperatorS op);

}  // namespace zolt::exchange
