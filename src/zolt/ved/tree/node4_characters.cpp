#include "zolt/common/signs.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

constexpr bool X = true;
constexpr bool o = false;

}  // namespace

// A line of 16 characters for each leading digit.
// clang-format off
bool const Node4C::acceptable_characters[nb_acceptable_characters] = {
    o, o, o, o, o, o, o, o, o, o, o, o, o, o, o, o,  // 00
    o, o, o, o, o, o, o, o, o, o, o, o, o, o, o, o,  // 10
    X, o, o, o, o, o, o, o, o, o, o, o, o, o, X, o,  // 20
    X, X, X, X, X, X, X, X, X, X, X, o, o, o, o, o,  // 30
    X, X, X, X, X, X, X, X, X, X, X, X, X, X, X, X,  // 40
    X, X, X, X, X, X, X, X, X, X, X, o, o, o, o, X,  // 50
    o, X, X, X, X, X, X, X, X, X, X, X, X, X, X, X,  // 60
    X, X, X, X, X, X, X, X, X, X, X, X, o, X, o, o,  // 70
};

// These are the same characters without the blank and ":".
bool const Node4C::identifier_characters[nb_acceptable_characters] = {
    o, o, o, o, o, o, o, o, o, o, o, o, o, o, o, o,  // 00
    o, o, o, o, o, o, o, o, o, o, o, o, o, o, o, o,  // 10
    o, o, o, o, o, o, o, o, o, o, o, o, o, o, X, o,  // 20
    X, X, X, X, X, X, X, X, X, X, o, o, o, o, o, o,  // 30
    X, X, X, X, X, X, X, X, X, X, X, X, X, X, X, X,  // 40
    X, X, X, X, X, X, X, X, X, X, X, o, o, o, o, X,  // 50
    o, X, X, X, X, X, X, X, X, X, X, X, X, X, X, X,  // 60
    X, X, X, X, X, X, X, X, X, X, X, X, o, X, o, o,  // 70
};
// clang-format on

bool Node4C::isAcceptable(unsigned short c, bool identifier) {
  if (c < nb_acceptable_characters) return identifier ? identifier_characters[c] : acceptable_characters[c];
  switch (c) {
    case common::en_dash:
    case common::minus_sign:
    case common::times_sign:
    case common::not_equal_sign:
    case common::less_or_equal_sign:
    case common::greater_or_equal_sign:
    case common::store_sign:
      return false;
    case common::pi_sign:
      return !identifier;
    default:
      return true;
  }
}

bool Node4C::isTypable(char16_t c) {
  return c >= nb_acceptable_characters || acceptable_characters[c] || c == COMMA_C || c == OPEN_C ||
         c == CLOSE_C;
}

}  // namespace zolt::math::ved
