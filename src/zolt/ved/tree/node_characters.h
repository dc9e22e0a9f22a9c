#pragma once

#include <array>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

using oss::wstring;

/// The characters that mean something in the texts of nodes. `Node4C` has them all as members.
class NodeCharactersBC {
 public:
  static constexpr char16_t PREFIX_C = u'`';  ///< encloses finished prefix text inside a row's infix text
  static constexpr char16_t OPEN_C = u'(';
  static constexpr char16_t COMMA_C = u',';
  static constexpr char16_t CLOSE_C = u')';
  static constexpr char16_t POWER_C = u'^';
  static wstring const PLACEHOLDER_STR;  ///< "●", shown and measured in place of an empty slot
  static constexpr unsigned long nb_acceptable_characters = 128;
  using CharacterTableT = std::array<bool, nb_acceptable_characters>;
  static CharacterTableT const acceptable_characters;
  static CharacterTableT const identifier_characters;

  /// Whether a character can be part of an operand (`identifier`: of a name).
  static bool isAcceptable(unsigned short c, bool identifier);
  /// Whether a character may be typed into a text; other signs are typed through the operators they name.
  static bool isTypable(char16_t c);

 protected:
  ~NodeCharactersBC() = default;
};

}  // namespace zolt::math::ved
