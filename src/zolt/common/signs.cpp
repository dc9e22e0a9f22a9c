#include "zolt/common/signs.h"

namespace zolt::math::common {

namespace {

constexpr unsigned typed = LOOK_ALIKE_TYPED;
constexpr unsigned pasted = LOOK_ALIKE_PASTED;
constexpr unsigned drawn = LOOK_ALIKE_DRAWN;

struct LookAlikesS {
  char16_t meant;
  unsigned uses;
  std::u16string_view signs;
};

constexpr LookAlikesS look_alikes[] = {
    {u' ', typed | pasted, u"\t\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009"},
    {u' ', typed | pasted, u"\u200A\u202F\u205F\u3000"},
    // Nobody types what has no width or ends a line; U+2061 says that a function is applied, as brackets do.
    {u' ', pasted, u"\n\r\u200B\u2060\u2061\uFEFF"},
    {u'-', typed | pasted | drawn, u"\u2013\u2212"},
    {u'-', typed, u"\u2010\u2011\u2012\u2014\u2015\uFE63"},
    {u'*', typed | pasted | drawn, u"\u00B7\u2219"},
    {u'*', typed | pasted, u"\u00D7\u2062\u2217\u22C5"},
    {u'*', typed, u"\u2022\u2715"},
    {u'/', typed | pasted, u"\u00F7\u2044\u2215"},
    // What keyboards send for a dead "^"; in pasted text they are parts of words.
    {u'^', typed, u"\u02C6\u0302\u2303"},
    {pi_sign, typed | pasted, u"\u03C0"},
    {u'\u00B0', typed | pasted, u"\u00BA"},
    // The letters that Greek keyboards send have twins among the units.
    {u'\u03BC', typed, u"\u00B5"},
    {u'\u03A9', typed, u"\u2126"},
    {less_or_equal_sign, typed, u"\u2266\u2A7D"},
    {greater_or_equal_sign, typed, u"\u2267\u2A7E"},
    // A tree has round brackets only; pasted ones have to match.
    {u'(', typed, u"[{"},
    {u')', typed, u"]}"}};

constexpr std::u16string_view raised_signs = u"⁰¹²³⁴⁵⁶⁷⁸⁹⁺⁻⁽⁾ⁿⁱ";
constexpr std::u16string_view lowered_signs = u"0123456789+-()ni";

constexpr std::u16string_view circumflexed = u"âêîôûĉĝĥĵŝŵŷẑÂÊÎÔÛĈĜĤĴŜŴŶẐ";
constexpr std::u16string_view plain_letters = u"aeioucghjswyzAEIOUCGHJSWYZ";

/// The character of `to` at the place that `c` has in `from`, none of which is ASCII; U+0000 when it has
/// none.
char16_t translate(char16_t c, std::u16string_view from, std::u16string_view to) {
  if (c < 0x80) return u'\0';
  std::size_t const place = from.find(c);
  return place == from.npos ? u'\0' : to[place];
}

}  // namespace

oss::wstring toAsciiLower(oss::wstring text) {
  for (char16_t& c : text) c = toAsciiLower(c);
  return text;
}

char16_t foldLookAlike(char16_t c, LookAlikeUseE use) {
  constexpr char16_t full_width_distance = 0xFEE0;
  if (use == LOOK_ALIKE_TYPED && c > 0xFF00 && c < 0xFF5F) {
    c = static_cast<char16_t>(c - full_width_distance);
  }
  // Most of any text, and none of it is in the table.
  if (c >= u' ' && c < 0x7F && c != u'[' && c != u']' && c != u'{' && c != u'}') return c;
  for (LookAlikesS const& entry : look_alikes) {
    if ((entry.uses & use) != 0 && entry.signs.find(c) != entry.signs.npos) return entry.meant;
  }
  return c;
}

unsigned countPrimes(char16_t c) {
  constexpr std::u16string_view single = u"'\u02B9\u2019\u2032";
  constexpr char16_t two = u'\u2033', three = u'\u2034';
  return c == two ? 2 : c == three ? 3 : single.find(c) != single.npos ? 1 : 0;
}

char16_t loweredSign(char16_t c) { return translate(c, raised_signs, lowered_signs); }
char16_t withoutCircumflex(char16_t c) { return translate(c, circumflexed, plain_letters); }

}  // namespace zolt::math::common
