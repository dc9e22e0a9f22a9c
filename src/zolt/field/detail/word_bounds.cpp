#include "zolt/field/detail/word_bounds.h"

#include "zolt/common/signs.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::field::detail {

using math::ved::Node4C;

bool isWordCharacter(char16_t c) { return c == math::common::pi_sign || Node4C::isAcceptable(c, true); }

bool isContinuation(char16_t c) {
  return (c >= 0xDC00 && c < 0xE000) || (c >= 0x0300 && c < 0x0370) || (c >= 0x20D0 && c < 0x2100) ||
         (c >= 0xFE00 && c < 0xFE10);
}

unsigned int wordStart(wstring const& text, unsigned int pos) {
  while (pos > 0 && isWordCharacter(text[pos - 1])) --pos;
  return pos;
}

unsigned int wordEnd(wstring const& text, unsigned int pos) {
  while (pos < text.size() && isWordCharacter(text[pos])) ++pos;
  return pos;
}

}  // namespace zolt::field::detail
