#include "fuzzing/bytes_text.h"

namespace zolt::fuzz {

namespace {

bool isContinuation(std::uint8_t byte) { return (byte & 0xC0U) == 0x80U; }

void appendCharacter(std::string& out, unsigned c) {
  auto const put = [&](unsigned byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0U | c >> 6U);
    put(0x80U | (c & 0x3FU));
  } else if (c < 0x10000) {
    put(0xE0U | c >> 12U);
    put(0x80U | (c >> 6U & 0x3FU));
    put(0x80U | (c & 0x3FU));
  } else {
    put(0xF0U | c >> 18U);
    put(0x80U | (c >> 12U & 0x3FU));
    put(0x80U | (c >> 6U & 0x3FU));
    put(0x80U | (c & 0x3FU));
  }
}

}  // namespace

wstring toText(std::uint8_t const* data, std::size_t size) {
  wstring text;
  for (std::size_t i = 0; i < size;) {
    unsigned const lead = data[i];
    std::size_t const length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    bool whole = length > 1 && size - i >= length;
    for (std::size_t k = 1; whole && k < length; ++k) whole = isContinuation(data[i + k]);
    if (!whole) {
      text += static_cast<char16_t>(lead);
      ++i;
      continue;
    }
    unsigned c = lead & (0xFFU >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) c = c << 6U | (data[i + k] & 0x3FU);
    if (c < 0x10000) {
      text += static_cast<char16_t>(c);
    } else {
      c = (c - 0x10000) & 0xFFFFFU;
      text += static_cast<char16_t>(0xD800U + (c >> 10U));
      text += static_cast<char16_t>(0xDC00U + (c & 0x3FFU));
    }
    i += length;
  }
  return text;
}

wstring toText(std::string const& bytes) {
  return toText(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
}

std::string toBytes(wstring const& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned c = text[i];
    bool const high = c >= 0xD800 && c < 0xDC00;
    if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      c = 0x10000U + ((c - 0xD800U) << 10U) + (text[++i] - 0xDC00U);
    }
    appendCharacter(out, c);
  }
  return out;
}

}  // namespace zolt::fuzz
