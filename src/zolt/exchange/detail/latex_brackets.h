#pragma once

#include <string_view>

#include "zolt/algexpr/node.h"
#include "zolt/exchange/detail/notation.h"

namespace zolt::exchange::detail {

// What ends a part of a formula in LaTeX beside delimiters that are signs.

constexpr char16_t no_bracket = u'.';  ///< of "\left."
constexpr char16_t brace_close = u'\x01';
constexpr char16_t integral_close = u'\x02';

constexpr int no_rule = RULE_ASSIGNMENT - 1;  ///< looser than any rule

bool isMinusOne(math::algexpr::NodeABC const& node);

/// Takes "k = 1" apart, the name and the value around `sign`. Returns false when it is something else.
[[nodiscard]] bool takeRange(oss::PointerTC<math::algexpr::NodeABC> const& bound, std::u16string_view sign,
                             oss::PointerTC<math::algexpr::NodeABC>& name,
                             oss::PointerTC<math::algexpr::NodeABC>& value);

}  // namespace zolt::exchange::detail
