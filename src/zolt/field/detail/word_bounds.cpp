#include "zolt/field/detail/word_bounds.h"

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
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

unsigned int nameStart(wstring const& text, unsigned int pos) {
  unsigned int start = wordStart(text, pos);
  while (start < pos && math::common::startsNumber(text[start])) ++start;
  return start;
}

wstring separatorAt(wstring const& text, unsigned int pos, math::ved::OperatorListC const& operators) {
  if (pos == 0 || pos >= text.size()) return {};
  char16_t const left = text[pos - 1], right = text[pos];
  constexpr std::u16string_view halves = u"<>=!:";
  if (halves.find(left) != halves.npos) {
    return right == u'=' || (right == u'>' && (left == u'<' || left == u':')) ? u" " : u"";
  }
  unsigned int const start = wordStart(text, pos);
  if (start == pos || left == math::common::pi_sign || right == math::common::pi_sign) return {};
  bool const isNumber = math::common::startsNumber(text[start]);
  std::size_t const end =
      isNumber ? math::common::findNumberEnd(text, start, math::common::LONE_EXPONENT_LEFT) : start;
  if (end <= pos && (!isWordCharacter(right) || end == pos)) return {};
  auto const word = operators.lookupText(text.substr(start, pos - start));
  bool const takesOperand = word && (word->isLinear() || word->getArity() > 0);
  return math::common::startsNumber(right) && !takesOperand ? u"*" : u" ";
}

}  // namespace zolt::field::detail
