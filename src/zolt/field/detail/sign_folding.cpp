#include "zolt/field/detail/sign_folding.h"

#include <iterator>

namespace zolt::field::detail {

namespace {

struct PairS {
  char16_t from;
  char16_t to;
};

constexpr char16_t pi = u'\u0960';  // the operator table's own text for it

constexpr PairS look_alikes[] = {
    {u'\u2010', u'-'},      {u'\u2011', u'-'},      {u'\u2012', u'-'},      {u'\u2013', u'-'},
    {u'\u2014', u'-'},      {u'\u2015', u'-'},      {u'\u2212', u'-'},      {u'\uFE63', u'-'},
    {u'\u00B7', u'*'},      {u'\u00D7', u'*'},      {u'\u2022', u'*'},      {u'\u2217', u'*'},
    {u'\u2219', u'*'},      {u'\u22C5', u'*'},      {u'\u2715', u'*'},      {u'\u2062', u'*'},
    {u'\u00F7', u'/'},      {u'\u2044', u'/'},      {u'\u2215', u'/'},      {u'\u02C6', u'^'},
    {u'\u0302', u'^'},      {u'\u2303', u'^'},      {u'\u03C0', pi},        {u'\u00B5', u'\u03BC'},
    {u'\u2126', u'\u03A9'}, {u'\u2A7D', u'\u2264'}, {u'\u2A7E', u'\u2265'}, {u'\u2266', u'\u2264'},
    {u'\u2267', u'\u2265'}, {u'[', u'('},           {u']', u')'},           {u'\u00BA', u'\u00B0'},
    {u'\u00A0', u' '},      {u'\u1680', u' '},      {u'\u202F', u' '},      {u'\u205F', u' '},
    {u'\u3000', u' '},      {u'\t', u' '}};

struct SignS {
  char16_t sign;
  char16_t const* name;
};

constexpr SignS signs[] = {{u'|', u"abs"},       {u'\u230A', u"floor"},    {u'\u2308', u"ceil"},
                           {u'\u221A', u"sqrt"}, {u'\u222B', u"integral"}, {u'\u2211', u"sum"},
                           {u'\u00B0', u"_deg"}, {u'\u02B3', u"_rad"},     {u'\u2227', u"and"},
                           {u'\u2228', u"or"},   {u'\u00AC', u"not"}};

constexpr PairS superscripts[] = {{u'\u00B9', u'1'}, {u'\u00B2', u'2'}, {u'\u00B3', u'3'}, {u'\u2070', u'0'},
                                  {u'\u2074', u'4'}, {u'\u2075', u'5'}, {u'\u2076', u'6'}, {u'\u2077', u'7'},
                                  {u'\u2078', u'8'}, {u'\u2079', u'9'}, {u'\u207A', u'+'}, {u'\u207B', u'-'},
                                  {u'\u207D', u'('}, {u'\u207E', u')'}, {u'\u207F', u'n'}, {u'\u2071', u'i'}};

constexpr PairS circumflexes[] = {{u'\u00E2', u'a'}, {u'\u00EA', u'e'}, {u'\u00EE', u'i'}, {u'\u00F4', u'o'},
                                  {u'\u00FB', u'u'}, {u'\u0109', u'c'}, {u'\u011D', u'g'}, {u'\u0125', u'h'},
                                  {u'\u0135', u'j'}, {u'\u015D', u's'}, {u'\u0175', u'w'}, {u'\u0177', u'y'},
                                  {u'\u1E91', u'z'}, {u'\u00C2', u'A'}, {u'\u00CA', u'E'}, {u'\u00CE', u'I'},
                                  {u'\u00D4', u'O'}, {u'\u00DB', u'U'}, {u'\u0108', u'C'}, {u'\u011C', u'G'},
                                  {u'\u0124', u'H'}, {u'\u0134', u'J'}, {u'\u015C', u'S'}, {u'\u0174', u'W'},
                                  {u'\u0176', u'Y'}, {u'\u1E90', u'Z'}};

template <std::size_t size>
char16_t find(PairS const (&table)[size], char16_t c, char16_t otherwise) {
  for (PairS const& pair : table) {
    if (pair.from == c) return pair.to;
  }
  return otherwise;
}

}  // namespace

char16_t foldCharacter(char16_t c, InputOptionsS const& options) {
  constexpr char16_t full_width_distance = 0xFEE0;
  if (c > 0xFF00 && c < 0xFF5F) c = static_cast<char16_t>(c - full_width_distance);
  if (c >= 0x2000 && c <= 0x200A) return u' ';
  if (options.decimalComma && c == u',') return u'.';
  if (options.decimalComma && c == u';') return u',';
  return find(look_alikes, c, c);
}

wstring operatorOfSign(char16_t c) {
  for (SignS const& sign : signs) {
    if (sign.sign == c) return sign.name;
  }
  return {};
}

char16_t loweredCharacter(char16_t c) { return find(superscripts, c, u'\0'); }

char16_t withoutCircumflex(char16_t c) { return find(circumflexes, c, u'\0'); }

}  // namespace zolt::field::detail
