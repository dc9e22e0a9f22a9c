#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::math::common {

// The signs of formulas that no keyboard has, and the characters that stand in for them. Every character here
// is one 16-bit unit.

constexpr char16_t en_dash = u'\u2013';
/// The minus of every text that this component writes.
constexpr char16_t minus_sign = u'\u2212';
constexpr char16_t times_sign = u'\u2219';
constexpr char16_t not_equal_sign = u'\u2260';
constexpr char16_t less_or_equal_sign = u'\u2264';
constexpr char16_t greater_or_equal_sign = u'\u2265';
constexpr char16_t store_sign = u'\u00BB';
constexpr char16_t infinity_sign = u'\u221E';
constexpr char16_t plus_minus_sign = u'\u00B1';
/// Ends names: f′. In a tree it is part of the name.
constexpr char16_t prime_sign = u'\u2032';
/// The constant pi in a tree and in infix text; every surface draws it as π. It has a code of its own because
/// π itself, U+03C0, is a letter, and letters make names.
constexpr char16_t pi_sign = u'\u0960';

/// What a minus may look like in text that is read.
constexpr bool isMinus(char16_t c) { return c == u'-' || c == en_dash || c == minus_sign; }
constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
constexpr bool isAsciiLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
/// The small letter of a capital of ASCII; any other character is its own.
constexpr char16_t toAsciiLower(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}
oss::wstring toAsciiLower(oss::wstring text);
constexpr bool isRelation(char16_t c) {
  return c == u'=' || c == u'<' || c == u'>' || c == not_equal_sign || c == less_or_equal_sign ||
         c == greater_or_equal_sign;
}

/// Where a character is taken for one that it looks like. The uses differ: a person who types means some
/// operator with every dash, but a long dash in pasted text is punctuation; print keeps "×" apart from "·".
enum LookAlikeUseE : unsigned { LOOK_ALIKE_TYPED = 1, LOOK_ALIKE_PASTED = 2, LOOK_ALIKE_DRAWN = 4 };

/// The character that `c` stands for in that use, "-", "*", "/" and " " among them; `c` itself when it stands
/// for nothing else.
char16_t foldLookAlike(char16_t c, LookAlikeUseE use);

/// How many primes a character is when it comes after a name: "'" 1, "″" 2; 0: it is something else.
unsigned countPrimes(char16_t c);
/// A raised character as the one that it raises, "²" as "2"; U+0000 when it is none.
char16_t loweredSign(char16_t c);
/// The letter under a circumflex, "ê" as "e"; U+0000 when there is none.
char16_t withoutCircumflex(char16_t c);

}  // namespace zolt::math::common
