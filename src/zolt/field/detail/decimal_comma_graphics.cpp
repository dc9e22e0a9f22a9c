#include "zolt/field/detail/decimal_comma_graphics.h"

namespace zolt::field::detail {

wstring toCommas(wstring text) {
  for (char16_t& c : text) c = c == u'.' ? u',' : c == u',' ? u';' : c;
  return text;
}

wstring toCommaText(wstring const& text) {
  wstring out;
  for (char16_t const c : text) {
    // Empty arguments do not end a row.
    if (c == u',' && !out.empty() && out.back() == u';') out += u' ';
    if (c == u';') out += c;
    out += c == u'.' ? u',' : c == u',' ? u';' : c;
  }
  return out;
}

wstring toPointText(wstring const& text) {
  wstring out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    bool const endsRow = text.compare(i, 2, u";;") == 0;
    if (endsRow) ++i;
    out += endsRow ? u';' : text[i] == u',' ? u'.' : text[i] == u';' ? u',' : text[i];
  }
  return out;
}

DecimalCommaGraphicsC::~DecimalCommaGraphicsC() = default;

}  // namespace zolt::field::detail
