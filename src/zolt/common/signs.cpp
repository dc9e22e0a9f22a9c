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
    {u'(', typed, u"["},
    {u')', typed, u"]"}};

struct RaisedS {
  char16_t raised;
  char16_t lowered;
};

constexpr RaisedS raised_signs[] = {
    {u'\u00B9', u'1'}, {u'\u00B2', u'2'}, {u'\u00B3', u'3'}, {u'\u2070', u'0'},
    {u'\u2074', u'4'}, {u'\u2075', u'5'}, {u'\u2076', u'6'}, {u'\u2077', u'7'},
    {u'\u2078', u'8'}, {u'\u2079', u'9'}, {u'\u207A', u'+'}, {u'\u207B', u'-'},
    {u'\u207D', u'('}, {u'\u207E', u')'}, {u'\u207F', u'n'}, {u'\u2071', u'i'}};

}  // namespace

char16_t foldLookAlike(char16_t c, LookAlikeUseE use) {
  for (LookAlikesS const& entry : look_alikes) {
    if ((entry.uses & use) != 0 && entry.signs.find(c) != entry.signs.npos) return entry.meant;
  }
  return c;
}

char16_t loweredSign(char16_t c) {
  for (RaisedS const& entry : raised_signs) {
    if (entry.raised == c) return entry.lowered;
  }
  return u'\0';
}

}  // namespace zolt::math::common
