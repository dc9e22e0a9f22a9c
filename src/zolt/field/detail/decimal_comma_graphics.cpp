#include "zolt/field/detail/decimal_comma_graphics.h"

namespace zolt::field::detail {

namespace {

wstring exchanged(wstring text, char16_t const (&from)[3], char16_t const (&to)[3]) {
  for (char16_t& c : text) {
    if (c == from[0]) {
      c = to[0];
    } else if (c == from[1]) {
      c = to[1];
    }
  }
  return text;
}

}  // namespace

wstring toCommas(wstring text) { return exchanged(std::move(text), u".,", u",;"); }

wstring toPoints(wstring text) { return exchanged(std::move(text), u",;", u".,"); }

DecimalCommaGraphicsC::~DecimalCommaGraphicsC() = default;

}  // namespace zolt::field::detail
