#include "zolt/surfaces/typeset/detail/letter_style.h"

#include <algorithm>

namespace zolt::surfaces {

namespace {

constexpr char16_t const* standard_names[] = {
    u"sin",     u"cos",      u"tan",  u"cot",  u"sec",   u"csc",   u"asin",  u"acos",  u"atan",
    u"arcsin",  u"arccos",   u"sinh", u"cosh", u"tanh",  u"coth",  u"asinh", u"acosh", u"atanh",
    u"arctan",  u"ln",       u"log",  u"exp",  u"lim",   u"max",   u"min",   u"sup",   u"inf",
    u"gcd",     u"lcm",      u"det",  u"arg",  u"sgn",   u"sign",  u"abs",   u"floor", u"ceil",
    u"mod",     u"div",      u"and",  u"or",   u"not",   u"xor",   u"if",    u"error", u"sqrt",
    u"nthroot", u"integral", u"sum",  u"diff", u"where", u"solve", u"log2",  u"log10", u"atan2"};

}  // namespace

LetterStyleC::LetterStyleC() : names_(std::begin(standard_names), std::end(standard_names)) {
  std::sort(names_.begin(), names_.end());
}

bool LetterStyleC::isLetter(char32_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= 0xC0 && c <= 0x24F) ||
         (c >= 0x370 && c <= 0x52F);
}

bool LetterStyleC::isItalicLetter(char32_t c) { return isLetter(c) && !(c >= 0x391 && c <= 0x3A9); }

void LetterStyleC::add(oss::wstring const& name) {
  auto const place = std::lower_bound(names_.begin(), names_.end(), name);
  if (name.empty() || (place != names_.end() && *place == name)) return;
  names_.insert(place, name);
}

void LetterStyleC::narrow(RangeS& range, char16_t letter) const {
  std::size_t const at = range.length++;
  auto const letterOf = [&](oss::wstring const& name) {
    return name.size() > at ? unsigned(name[at]) + 1 : 0;
  };
  auto const begin = names_.begin() + std::ptrdiff_t(range.first);
  auto const end = names_.begin() + std::ptrdiff_t(range.last);
  unsigned const wanted = unsigned(letter) + 1;
  auto const low =
      std::partition_point(begin, end, [&](oss::wstring const& name) { return letterOf(name) < wanted; });
  auto const high =
      std::partition_point(low, end, [&](oss::wstring const& name) { return letterOf(name) == wanted; });
  range.first = std::size_t(low - names_.begin());
  range.last = std::size_t(high - names_.begin());
}

}  // namespace zolt::surfaces
