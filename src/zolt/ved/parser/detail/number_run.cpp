#include "zolt/ved/parser/detail/number_run.h"

#include "zolt/common/decimal_text.h"

namespace zolt::math::ved::detail {

std::size_t findNumberEnd(std::u16string_view text, std::size_t begin) {
  std::size_t end = begin;
  auto const skipDigits = [&] {
    while (end < text.size() && startsNumber(text[end])) ++end;
  };
  skipDigits();
  if (end < text.size() && (text[end] == u'E' || text[end] == u'e')) {
    ++end;
    if (end < text.size() && (text[end] == u'+' || common::isMinus(text[end]))) ++end;
    skipDigits();
  }
  return end;
}

bool isNumberToken(std::u16string_view text, std::u16string_view& number) {
  std::size_t const begin = text.find_first_not_of(u' ');
  if (begin == text.npos || !startsNumber(text[begin])) return false;
  std::size_t const end = findNumberEnd(text, begin);
  number = text.substr(begin, end - begin);
  return text.find_first_not_of(u' ', end) == text.npos;
}

}  // namespace zolt::math::ved::detail
