#pragma once

#include "zolt/oss/wstring.h"

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

}  // namespace zolt::field::detail
