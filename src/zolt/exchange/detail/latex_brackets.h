#pragma once

#include <string_view>

#include "zolt/algexpr/node.h"
#include "zolt/exchange/detail/notation.h"

namespace zolt::exchange::detail {

// What ends a part of a formula in LaTeX beside delimiters that are signs.

constexpr char16_t no_bracket = u'.';  ///< of "\left."
constexpr char16_t brace_close = u'\x01';
constexpr char16_t integral_close = u'\x02';
constexpr char16_t table_close = u'\x03';
constexpr char16_t fraction_close = u'\x04';  ///< of a brace around a part of a fraction
constexpr char16_t limit_close = u'\x05';     ///< of a brace around the bound of a limit
constexpr char16_t list_close = u'\x06';      ///< of brackets in which a comma was

constexpr RuleE over_rule = static_cast<RuleE>(RULE_ASSIGNMENT - 1);  ///< of "\over"
constexpr int no_rule = over_rule - 1;                                ///< looser than any rule

constexpr bool isBraceClose(char16_t close) {
  return close == brace_close || close == fraction_close || close == limit_close;
}
constexpr bool isIntervalEnd(char16_t bracket) {
  return bracket == u')' || bracket == u']' || bracket == u'[';
}

bool isMinusOne(math::algexpr::NodeABC const& node);

/// Takes "k = 1" apart, the name and the value around `sign`. Returns false when it is something else.
[[nodiscard]] bool takeRange(oss::PointerTC<math::algexpr::NodeABC> const& bound, std::u16string_view sign,
                             oss::PointerTC<math::algexpr::NodeABC>& name,
                             oss::PointerTC<math::algexpr::NodeABC>& value);

}  // namespace zolt::exchange::detail
