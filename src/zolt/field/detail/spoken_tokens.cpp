#include "zolt/field/detail/spoken_tokens.h"

#include <algorithm>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::field::detail {

using namespace math::common;
using namespace math::ved;

namespace {

/// What is longer is not short to hear either.
constexpr unsigned long most_short = 32;

bool isNameCharacter(char16_t c) {
  return c != pi_sign && (isWordCharacter(c) || isContinuation(c) || c == prime_sign);
}

unsigned int findSignEnd(wstring const& text, unsigned int begin, unsigned int end,
                         OperatorListC const& operators) {
  if (begin + 1 < end && operators.lookupText(text.substr(begin, 2))) return begin + 2;
  unsigned int last = begin + 1;
  while (last < end && isContinuation(text[last])) ++last;
  return last;
}

}  // namespace

std::vector<SpokenTokenS> findSpokenTokens(wstring const& text, unsigned int begin, unsigned int end,
                                           OperatorListC const& operators) {
  std::vector<SpokenTokenS> tokens;
  while (begin < end) {
    char16_t const c = text[begin];
    SpokenTokenS token = {SPOKEN_SIGN, begin, end};
    if (c == u' ') {
      ++begin;
      continue;
    }
    if (c == Node4C::PREFIX_C) {
      token.kind = SPOKEN_PREFIX;
      auto const close = text.find(Node4C::PREFIX_C, begin + 1);
      if (close < end) token.end = static_cast<unsigned int>(close) + 1;
    } else if (startsNumber(c)) {
      token.kind = SPOKEN_NUMBER;
      token.end = std::min(end, static_cast<unsigned int>(findNumberEnd(text, begin, LONE_EXPONENT_LEFT)));
    } else if (isNameCharacter(c)) {
      token.kind = SPOKEN_NAME;
      token.end = begin + 1;
      while (token.end < end && isNameCharacter(text[token.end])) ++token.end;
    } else {
      token.end = findSignEnd(text, begin, end, operators);
    }
    tokens.push_back(token);
    begin = token.end;
  }
  return tokens;
}

bool isShortText(Node4C const& item, OperatorListC const& operators, SpokenSignE sign) {
  if (item.getType() != NODE4_TEXT || item.sizeText() == 0 || item.sizeText() > most_short) return false;
  wstring const& text = item.crefText();
  auto const tokens = findSpokenTokens(text, 0, endOf(&item).pos, operators);
  if (tokens.empty() || tokens.size() > (sign == WITH_SIGN ? 2 : 1)) return false;
  char16_t const first = text[tokens[0].begin];
  if (tokens.size() == 2 && first != minus_sign && first != u'+') return false;
  SpokenTokenS const& last = tokens.back();
  if (last.kind == SPOKEN_SIGN) return text[last.begin] == pi_sign || text[last.begin] == infinity_sign;
  if (last.kind != SPOKEN_NAME) return last.kind == SPOKEN_NUMBER;
  auto const op = operators.lookupText(text.substr(last.begin, last.end - last.begin));
  return !op || !op->isLinear();
}

bool isShortRow(Node4C const& row, OperatorListC const& operators, SpokenSignE sign) {
  return row.numChildren() == 1 && isShortText(*row.child(0), operators, sign);
}

}  // namespace zolt::field::detail
