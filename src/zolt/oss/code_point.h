#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zolt::oss {

inline bool isHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
inline bool isLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

inline bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

/// The code point of a surrogate pair.
inline char32_t joinSurrogates(char16_t high, char16_t low) {
  return 0x10000 + ((char32_t(high) - 0xD800) << 10) + (char32_t(low) - 0xDC00);
}

/// Reads the code point at `index` (below the length) and moves `index` past it. A surrogate without its
/// partner comes back as itself.
inline char32_t readCodePoint(std::u16string_view text, std::size_t& index) {
  char16_t const first = text[index++];
  if (!isHighSurrogate(first) || index == text.size() || !isLowSurrogate(text[index])) return first;
  return joinSurrogates(first, text[index++]);
}

/// Appends a code point as one 16-bit character or two.
inline void appendUtf16(std::u16string& out, char32_t c) {
  if (c < 0x10000) {
    out += char16_t(c);
  } else {
    out += char16_t(0xD800 + ((c - 0x10000) >> 10));
    out += char16_t(0xDC00 + ((c - 0x10000) & 0x3FF));
  }
}

/// Appends a code point that is not a surrogate in UTF-8.
inline void appendUtf8(std::string& out, char32_t c) {
  auto const tail = [&](int shift) { out += char(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) {
    out += char(c);
  } else if (c < 0x800) {
    out += char(0xC0 | (c >> 6));
    tail(0);
  } else if (c < 0x10000) {
    out += char(0xE0 | (c >> 12));
    tail(6), tail(0);
  } else {
    out += char(0xF0 | (c >> 18));
    tail(12), tail(6), tail(0);
  }
}

}  // namespace zolt::oss
