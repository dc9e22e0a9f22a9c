#include "zolt/oss/utf8.h"

#include "zolt/oss/code_point.h"

namespace zolt::oss {

namespace {

constexpr char32_t replacement = 0xFFFD;

/// What may come after a first byte.
struct SequenceS {
  std::size_t tail;         // the number of further bytes; 0: none is a sequence of several
  unsigned char low, high;  // of the second byte; all others are 0x80 to 0xBF
};

constexpr SequenceS sequenceOf(unsigned char first) {
  if (first < 0xC2 || first > 0xF4) return {0, 0, 0};
  if (first < 0xE0) return {1, 0x80, 0xBF};
  // Neither longer sequences than needed, nor surrogates, nor what is beyond the last code point.
  if (first < 0xF0) {
    return {2, static_cast<unsigned char>(first == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(first == 0xED ? 0x9F : 0xBF)};
  }
  return {3, static_cast<unsigned char>(first == 0xF0 ? 0x90 : 0x80),
          static_cast<unsigned char>(first == 0xF4 ? 0x8F : 0xBF)};
}

/// Reads the code point at `index` and moves `index` past it. False: a wrong sequence, and `index` is past
/// what may belong to it.
bool readSequence(std::string_view bytes, std::size_t& index, char32_t& c) {
  auto const first = static_cast<unsigned char>(bytes[index++]);
  c = first;
  if (first < 0x80) return true;
  SequenceS const sequence = sequenceOf(first);
  if (sequence.tail == 0) return false;
  c = first & (0x3Fu >> sequence.tail);
  for (std::size_t i = 0; i < sequence.tail; ++i) {
    if (index == bytes.size()) return false;
    auto const next = static_cast<unsigned char>(bytes[index]);
    if (next < (i == 0 ? sequence.low : 0x80) || next > (i == 0 ? sequence.high : 0xBF)) return false;
    c = (c << 6) | (next & 0x3Fu);
    ++index;
  }
  return true;
}

}  // namespace

std::string toUtf8(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    char32_t const c = readCodePoint(text, i);
    appendUtf8(bytes, isSurrogate(c) ? replacement : c);
  }
  return bytes;
}

bool fromUtf8(std::string_view bytes, wstring& text, Utf8FaultS* fault) {
  text.clear();
  text.reserve(bytes.size());
  bool sound = true;
  for (std::size_t i = 0; i < bytes.size();) {
    std::size_t const begin = i;
    char32_t c = 0;
    if (readSequence(bytes, i, c)) {
      appendUtf16(text, c);
      continue;
    }
    if (sound && fault) *fault = {begin, text.size()};
    sound = false;
    appendUtf16(text, replacement);
  }
  return sound;
}

wstring fromUtf8(std::string_view bytes) {
  wstring text;
  fromUtf8(bytes, text);
  return text;
}

}  // namespace zolt::oss
