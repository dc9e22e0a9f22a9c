#include "zolt/oss/quoted_text.h"

#include <utility>

#include "zolt/oss/code_point.h"

namespace zolt::oss {

namespace {

constexpr char16_t digits[] = u"0123456789ABCDEF";

}  // namespace

void appendQuoted(wstring& out, char16_t c) {
  if (c < u' ' || c == 0x7F || isSurrogate(c)) {
    out += u"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) out += digits[(c >> shift) & 0xF];
    return;
  }
  if (c == u'"' || c == u'\\') out += u'\\';
  out += c;
}

bool readEscaped(wstring const& text, std::size_t& position, char16_t& c) {
  if (position >= text.size()) return false;
  c = text[position++];
  if (c != u'u') return true;
  c = 0;
  for (std::size_t const end = position + 4; position < end; ++position) {
    unsigned const digit = position < text.size() ? hexadecimalValue(text[position]) : 16;
    if (digit > 15) return false;
    c = static_cast<char16_t>(c * 16u + digit);
  }
  return true;
}

wstring toDigits(unsigned long value, unsigned base) {
  wstring text;
  do {
    text.insert(text.begin(), digits[value % base]);
    value /= base;
  } while (value > 0);
  return text;
}

bool readDigits(std::u16string_view text, unsigned base, unsigned long& value) {
  constexpr unsigned long largest = 0xFFFFFFFF;
  value = 0;
  for (char16_t const c : text) {
    unsigned const digit = hexadecimalValue(c);
    if (digit >= base || value > (largest - digit) / base) return false;
    value = value * base + digit;
  }
  return !text.empty();
}

wstring toHexadecimal(bytestring const& bytes) {
  wstring text;
  for (unsigned char const byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

bool fromHexadecimal(wstring const& text, bytestring& bytes) {
  if (text.size() % 2 != 0) return false;
  bytestring read;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    unsigned const high = hexadecimalValue(text[i]);
    unsigned const low = hexadecimalValue(text[i + 1]);
    if (high > 15 || low > 15) return false;
    read += static_cast<unsigned char>(high * 16 + low);
  }
  bytes = std::move(read);
  return true;
}

}  // namespace zolt::oss
