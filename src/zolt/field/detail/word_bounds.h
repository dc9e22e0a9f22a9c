#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using oss::wstring;

/// Whether it is a letter or digit of a name or number, or a decimal point.
bool isWordCharacter(char16_t c);
/// Whether the caret must not be placed before this character: the second half of a surrogate pair, a
/// combining mark.
bool isContinuation(char16_t c);
/// Where the run of word characters that ends (starts) at `pos` starts (ends).
unsigned int wordStart(wstring const& text, unsigned int pos);
unsigned int wordEnd(wstring const& text, unsigned int pos);

/// Where the name that ends at `pos` starts, without a number before it: "2pi" ends in the name "pi".
unsigned int nameStart(wstring const& text, unsigned int pos);

/// What keeps the parts of a text before and after `pos` apart when they would be read as one name, number or
/// sign: a blank, or a times sign before a number. Empty when nothing has to.
wstring separatorAt(wstring const& text, unsigned int pos, math::ved::OperatorListC const& operators);

}  // namespace zolt::field::detail
