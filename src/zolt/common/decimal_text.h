#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::math::common {

using oss::wstring;
using wstring_view = std::u16string_view;

// What a number is: `findNumberEnd` says how far a run of characters reaches that a person would call one
// number, and `readDecimalText` whether such a run is one.

constexpr bool startsNumber(char16_t c) { return (c >= u'0' && c <= u'9') || c == u'.'; }

/// Whether an "E" right after digits belongs to the run when no digits come after it and its sign.
enum LoneExponentE {
  /// "2e" is one run, whose fault is then reported as a bad number: the rule of infix text.
  LONE_EXPONENT_TAKEN,
  /// "2e" is twice e: the rule for what people type and paste.
  LONE_EXPONENT_LEFT
};

/// The index after the run that starts at `begin`: digits and points in any order, then perhaps "E" or "e", a
/// sign ("+" or a minus) and more digits and points.
std::size_t findNumberEnd(wstring_view text, std::size_t begin, LoneExponentE loneExponent);

/// Where the parts of an unsigned decimal number are in its text: `digits[.digits]` or `.digits`, then
/// optionally "E" or "e", a sign ("+" or a minus) and digits. "3." is a number, "." is not.
struct DecimalTextS {
  wstring_view integerDigits;
  wstring_view fractionDigits;
  wstring_view exponentDigits;
  bool hasPoint = false;
  bool exponentNegative = false;

  bool hasExponent() const { return !exponentDigits.empty(); }
  bool isInteger() const { return !hasPoint && !hasExponent(); }
};

/// Cuts the whole of `text`. On a text that is no number: false, and `*breakPosition` is the index of the
/// first character that breaks the form, the text's length when something is missing at its end.
[[nodiscard]] bool readDecimalText(wstring_view text, DecimalTextS& decimal,
                                   std::size_t* breakPosition = nullptr);

/// Whether a number, and another one over a third, are together a mixed number as 3 ½ is: whole numbers, of
/// which the last two are less than one. "1 000/2" is none.
bool isMixedNumber(wstring_view whole, wstring_view numerator, wstring_view denominator);

/// A decimal number by its significant digits: 0.d1d2d3… times 10 to the `exponent`, d1 not zero. Zero has no
/// digits.
struct DecimalS {
  wstring digits;
  std::int64_t exponent = 0;
};

/// The digits as written, trailing zeros included, leading ones dropped. False, with nothing changed, when
/// the exponent does not fit 32 bits.
[[nodiscard]] bool toDecimal(DecimalTextS const& text, DecimalS& decimal);

/// Keeps at most `digits` (not 0) significant digits, rounding halves away from zero as people do on paper;
/// exact for any length. Trailing zeros that rounding leaves are dropped.
void roundDecimal(DecimalS& decimal, std::size_t digits);

/// Its text as a person writes it, without trailing zeros: plain, or with an exponent where a plain one would
/// be mostly zeros. Zero is "0".
wstring writeDecimal(DecimalS decimal);

}  // namespace zolt::math::common
