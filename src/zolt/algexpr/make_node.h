#pragma once

#include <vector>

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr {

/// A name can be written in prefix text when it has at least one character, no "(", ")", ",", blank, grave
/// accent or control character, and does not start like a number (a digit, ".", or a minus and one of these).
[[nodiscard]] bool isWritableName(wstring const& name);

/// `name` applied to `children`: a core function when the library's table has it as one, else a user
/// function. Null when the name cannot be written, a child is null, or there are none.
[[nodiscard]] PointerTC<NodeABC> makeFunction(wstring const& name, std::vector<PointerTC<NodeABC>> children);

/// A core constant when the library's table has the name as one, else a symbol. Null when it cannot be
/// written.
[[nodiscard]] PointerTC<NodeABC> makeNamed(wstring const& name);

/// A number of decimal digits, perhaps after a minus ("-", U+2013 or U+2212, kept as U+2212): an integer when
/// it has neither point nor exponent, else a float. The digits are kept as written. Null when `text` is not
/// a number.
[[nodiscard]] PointerTC<NodeABC> makeNumber(wstring const& text);

}  // namespace zolt::math::algexpr
