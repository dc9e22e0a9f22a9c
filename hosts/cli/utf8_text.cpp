#include "hosts/cli/utf8_text.h"

#include <utf8.h>

#include <iterator>
#include <utility>

#include "hosts/support/terminal_text.h"
#include "zolt/oss/code_point.h"

namespace zolt::cli {

namespace {

constexpr char32_t replacement = 0xFFFD;

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
    char32_t const c = oss::readCodePoint(text, i);
    oss::appendUtf8(bytes, oss::isSurrogate(c) ? replacement : c);
  }
  return bytes;
}

std::string toShown(std::string_view bytes) {
  oss::wstring text;
  std::size_t ignored = 0;
  fromUtf8(bytes, text, ignored, ignored);
  return toUtf8(support::getShown(std::move(text)));
}

}  // namespace zolt::cli
