#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class Node4C;
class OperatorListC;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using oss::wstring;

enum SpokenTokenE {
  SPOKEN_NUMBER,
  SPOKEN_NAME,   ///< of a variable, a function or an operator that is a word
  SPOKEN_SIGN,   ///< one character, or the signs of one operator
  SPOKEN_PREFIX  ///< prefix text between grave accents
};

/// A part of a text that is spoken as one.
struct SpokenTokenS {
  SpokenTokenE kind;
  unsigned int begin;
  unsigned int end;
};

/// The tokens from `begin` to `end`; blanks are in none.
std::vector<SpokenTokenS> findSpokenTokens(wstring const& text, unsigned int begin, unsigned int end,
                                           math::ved::OperatorListC const& operators);

enum SpokenSignE { WITHOUT_SIGN, WITH_SIGN };

/// Whether the item is a text of which a person can hear where it ends without being told: one number or
/// name, perhaps with a sign before it.
bool isShortText(math::ved::Node4C const& item, math::ved::OperatorListC const& operators,
                 SpokenSignE sign = WITHOUT_SIGN);
/// The same for all of a row.
bool isShortRow(math::ved::Node4C const& row, math::ved::OperatorListC const& operators,
                SpokenSignE sign = WITHOUT_SIGN);

}  // namespace zolt::field::detail
