#pragma once

#include <cstddef>
#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::oss {

// Texts in double quotes, as tree notation and event scripts hold them: `\"`, `\\`, and `\u000A` for a
// character by its code in four hexadecimal digits. Numbers as digits.

/// Appends `c` as a quoted text holds it: control characters and surrogates by their codes, quotes and
/// backslashes after a backslash.
void appendQuoted(wstring& out, char16_t c);
/// Reads what follows a backslash, from `position` on, and moves `position` past it. False when the text ends
/// there or the code is incomplete; `position` is then anywhere in the escape.
[[nodiscard]] bool readEscaped(wstring const& text, std::size_t& position, char16_t& c);

/// The value of a hexadecimal digit in either case, 16 for any other character.
constexpr unsigned hexadecimalValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - unsigned{u'0'};
  if (c >= u'A' && c <= u'F') return c - unsigned{u'A'} + 10;
  if (c >= u'a' && c <= u'f') return c - unsigned{u'a'} + 10;
  return 16;
}

/// A number in base 10 or 16, with upper-case digits.
wstring toDigits(unsigned long value, unsigned base = 10);
/// False, with `value` meaningless, when `digits` is empty, holds another character or exceeds 32 bits.
[[nodiscard]] bool readDigits(std::u16string_view digits, unsigned base, unsigned long& value);

/// Two upper-case digits for each byte.
wstring toHexadecimal(bytestring const& bytes);
/// False, with `bytes` untouched, when `text` is no sequence of pairs of hexadecimal digits.
[[nodiscard]] bool fromHexadecimal(wstring const& text, bytestring& bytes);

}  // namespace zolt::oss
