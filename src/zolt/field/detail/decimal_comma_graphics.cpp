#include "zolt/field/detail/decimal_comma_graphics.h"

namespace zolt::field::detail {

namespace {

wstring withCommas(wstring text) {
  for (char16_t& c : text) {
    if (c == u',') {
      c = u';';
    } else if (c == u'.') {
      c = u',';
    }
  }
  return text;
}

}  // namespace

DecimalCommaGraphicsC::~DecimalCommaGraphicsC() = default;

bool DecimalCommaGraphicsC::isChanged(wstring const& text) const {
  return commas_ && text.find_first_of(u".,") != wstring::npos;
}

void DecimalCommaGraphicsC::getTextExtent(wstring const& text, long& width, long& height,
                                          long& midHeight) const {
  if (isChanged(text)) return surface_->getTextExtent(withCommas(text), width, height, midHeight);
  surface_->getTextExtent(text, width, height, midHeight);
}

long DecimalCommaGraphicsC::getTextWidth(wstring const& text) const {
  return isChanged(text) ? surface_->getTextWidth(withCommas(text)) : surface_->getTextWidth(text);
}

long DecimalCommaGraphicsC::getTextHeight(wstring const& text) const {
  return isChanged(text) ? surface_->getTextHeight(withCommas(text)) : surface_->getTextHeight(text);
}

long DecimalCommaGraphicsC::getTextMidHeight(wstring const& text) const {
  return isChanged(text) ? surface_->getTextMidHeight(withCommas(text)) : surface_->getTextMidHeight(text);
}

void DecimalCommaGraphicsC::drawText(wstring const& text, long x, long y) const {
  if (isChanged(text)) return surface_->drawText(withCommas(text), x, y);
  surface_->drawText(text, x, y);
}

void DecimalCommaGraphicsC::drawTextAs(math::ved::TextRoleE role, wstring const& text, long x, long y) const {
  if (isChanged(text)) return surface_->drawTextAs(role, withCommas(text), x, y);
  surface_->drawTextAs(role, text, x, y);
}

}  // namespace zolt::field::detail
