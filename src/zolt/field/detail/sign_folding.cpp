#include "zolt/field/detail/sign_folding.h"

#include "zolt/common/signs.h"

namespace zolt::field::detail {

namespace {

struct PairS {
  char16_t from;
  char16_t to;
};

constexpr PairS circumflexes[] = {{u'\u00E2', u'a'}, {u'\u00EA', u'e'}, {u'\u00EE', u'i'}, {u'\u00F4', u'o'},
                                  {u'\u00FB', u'u'}, {u'\u0109', u'c'}, {u'\u011D', u'g'}, {u'\u0125', u'h'},
                                  {u'\u0135', u'j'}, {u'\u015D', u's'}, {u'\u0175', u'w'}, {u'\u0177', u'y'},
                                  {u'\u1E91', u'z'}, {u'\u00C2', u'A'}, {u'\u00CA', u'E'}, {u'\u00CE', u'I'},
                                  {u'\u00D4', u'O'}, {u'\u00DB', u'U'}, {u'\u0108', u'C'}, {u'\u011C', u'G'},
                                  {u'\u0124', u'H'}, {u'\u0134', u'J'}, {u'\u015C', u'S'}, {u'\u0174', u'W'},
                                  {u'\u0176', u'Y'}, {u'\u1E90', u'Z'}};

}  // namespace

char16_t foldCharacter(char16_t c, InputOptionsS const& options) {
  constexpr char16_t full_width_distance = 0xFEE0;
  if (c > 0xFF00 && c < 0xFF5F) c = static_cast<char16_t>(c - full_width_distance);
  if (options.decimalComma && c == u',') return u'.';
  if (options.decimalComma && c == u';') return u',';
  return math::common::foldLookAlike(c, math::common::LOOK_ALIKE_TYPED);
}

char16_t withoutCircumflex(char16_t c) {
  for (PairS const& pair : circumflexes) {
    if (pair.from == c) return pair.to;
  }
  return u'\0';
}

}  // namespace zolt::field::detail
