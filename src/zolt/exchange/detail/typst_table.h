#pragma once

#include <string_view>

#include "zolt/exchange/detail/notation.h"

namespace zolt::exchange::detail {

/// How Typst writes an operator of the expression library.
struct TypstRowS {
  std::u16string_view name;  ///< in expressions
  unsigned long arity;       ///< 0: one or more
  /// The whole form. "#1" is the first operand, "@1" the same in brackets when it binds looser than the
  /// whole,
  /// "&1" when it does not bind tighter, "#*" all operands with commas. "*" alone is a product.
  std::u16string_view written;
  RuleE rule = RULE_ATOM;  ///< how tightly the whole binds
};

/// The row of an operator with so many operands; null when there is none.
TypstRowS const* findTypst(std::u16string_view name, unsigned long numOperands);

}  // namespace zolt::exchange::detail
