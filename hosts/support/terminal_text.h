#pragma once

#include <string>
#include <string_view>

namespace zolt::support {

/// What a terminal gets in place of a character, so that no text can control it: the picture of a control
/// character of ASCII, U+FFFD for other controls, line separators and changes of direction, else the
/// character itself.
constexpr char16_t getShown(char16_t c) {
  if (c == u'\t') return u' ';
  if (c < 0x20) return static_cast<char16_t>(0x2400 + c);
  if (c == 0x7F) return u'\u2421';
  bool const controls = (c >= 0x80 && c < 0xA0) || c == 0x061C || c == 0x200E || c == 0x200F || c == 0x2028 ||
                        c == 0x2029 || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
  return controls ? u'\uFFFD' : c;
}

/// A text as one line for a terminal.
inline std::u16string getShown(std::u16string text) {
  for (char16_t& c : text) c = getShown(c);
  return text;
}

}  // namespace zolt::support
