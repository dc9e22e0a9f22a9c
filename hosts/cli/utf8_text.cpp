#include "hosts/cli/utf8_text.h"

#include <utf8.h>

#include <iterator>

namespace zolt::cli {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool isLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

}  // namespace

bool fromUtf8(std::string_view bytes, oss::wstring& text, std::size_t& badByte, std::size_t& badCharacter) {
  text.clear();
  auto const bad = utf8::find_invalid(bytes.begin(), bytes.end());
  utf8::utf8to16(bytes.begin(), bad, std::back_inserter(text));
  if (bad == bytes.end()) return true;
  badByte = static_cast<std::size_t>(bad - bytes.begin());
  badCharacter = text.size();
  std::string mended;
  utf8::replace_invalid(bad, bytes.end(), std::back_inserter(mended), replacement);
  utf8::utf8to16(mended.begin(), mended.end(), std::back_inserter(text));
  return false;
}

std::string toUtf8(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    char32_t const c = readCodePoint(text, i);
    utf8::append(isHighSurrogate(c) || isLowSurrogate(c) ? replacement : c, std::back_inserter(bytes));
  }
  return bytes;
}

char32_t readCodePoint(std::u16string_view text, std::size_t& index) {
  char32_t const first = text[index++];
  if (!isHighSurrogate(first) || index == text.size() || !isLowSurrogate(text[index])) return first;
  return 0x10000 + ((first - 0xD800) << 10) + (text[index++] - 0xDC00u);
}

}  // namespace zolt::cli
