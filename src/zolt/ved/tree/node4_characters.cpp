#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

// One row of 16 characters a line, from U+0000 to U+007F.
bool const Node4C::acceptable_characters[nb_acceptable_characters] = {
    false, false, false, false, false, false, false, false, false, false, false, false, false, false, false,
    false, false, false, false, false, false, false, false, false, false, false, false, false, false, false,
    false, false, true,  false, false, false, false, false, false, false, false, false, false, false, false,
    false, true,  false, true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  false,
    false, false, false, false, true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,
    true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,
    true,  false, false, false, false, true,  false, true,  true,  true,  true,  true,  true,  true,  true,
    true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,
    true,  true,  true,  true,  false, true,  false, false,
};

// The same without the blank and ":".
bool const Node4C::identifier_characters[nb_acceptable_characters] = {
    false, false, false, false, false, false, false, false, false, false, false, false, false, false, false,
    false, false, false, false, false, false, false, false, false, false, false, false, false, false, false,
    false, false, false, false, false, false, false, false, false, false, false, false, false, false, false,
    false, true,  false, true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  false, false,
    false, false, false, false, true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,
    true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,
    true,  false, false, false, false, true,  false, true,  true,  true,  true,  true,  true,  true,  true,
    true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,  true,
    true,  true,  true,  true,  false, true,  false, false,
};

bool Node4C::isAcceptable(unsigned short c, bool identifier) {
  if (c < nb_acceptable_characters) return identifier ? identifier_characters[c] : acceptable_characters[c];
  switch (c) {
    case u'\u2013':  // en dash
    case u'\u2212':  // minus sign
    case u'\u2219':  // bullet operator
    case u'\u2260':  // not equal
    case u'\u2264':  // less or equal
    case u'\u2265':  // greater or equal
    case u'\u00BB':  // store
      return false;
    case u'\u0960':  // pi
      return !identifier;
    default:
      return true;
  }
}

}  // namespace zolt::math::ved
