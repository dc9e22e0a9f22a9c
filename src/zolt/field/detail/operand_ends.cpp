#include "zolt/field/detail/operand_ends.h"

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field::detail {

using namespace math::ved;

PlaceS beforeBlanks(PlaceS place) {
  while (place.pos > 0 && place.node->crefText()[place.pos - 1] == u' ') --place.pos;
  return place;
}

PointerTC<OperatorBC> findWord(wstring const& text, unsigned int begin, unsigned int end,
                               OperatorListC const& operators) {
  auto op = begin < end ? operators.lookupText(text.substr(begin, end - begin)) : nullptr;
  return op && op->isLinear() ? op : nullptr;
}

bool isPostfixAt(PlaceS place, OperatorListC const& operators) {
  return place.pos > 0 &&
         operators.lookupText(place.node->crefText().substr(place.pos - 1, 1), OPERATOR_AFTER);
}

bool endsNameAt(PlaceS place) {
  wstring const& text = place.node->crefText();
  unsigned int const start = wordStart(text, place.pos);
  return start < place.pos && !math::common::startsNumber(text[start]);
}

bool endsWithIndexSign(PlaceS place) {
  return place.pos > 0 && place.node->crefText()[place.pos - 1] == u'_';
}

bool endsOperandAt(PlaceS place) {
  if (place.pos > 0) {
    char16_t const c = place.node->crefText()[place.pos - 1];
    return isWordCharacter(c) || c == u'!';
  }
  Node4C const* const left = place.node->goLeft();
  return left && !isOpeningBracket(left->getType());
}

bool endsOperandBefore(PlaceS place, OperatorListC const& operators) {
  PlaceS const end = beforeBlanks(place);
  wstring const& text = end.node->crefText();
  if (isPostfixAt(end, operators)) return true;
  return endsOperandAt(end) && !findWord(text, wordStart(text, end.pos), end.pos, operators);
}

bool endsSignBetween(PlaceS place, OperatorListC const& operators) {
  if (place.pos == 0) return false;
  wstring const sign = place.node->crefText().substr(place.pos - 1, 1);
  return sign == u" " || (!isWordCharacter(sign[0]) && operators.lookupText(sign, OPERATOR_BETWEEN));
}

bool endsCounted(PlaceS place) {
  wstring const& text = place.node->crefText();
  if (place.pos > 0 && text[place.pos - 1] == u'!') return true;
  unsigned int const start = wordStart(text, place.pos);
  return start < place.pos && math::common::startsNumber(text[start]) &&
         math::common::findNumberEnd(text, start, math::common::LONE_EXPONENT_LEFT) == place.pos;
}

}  // namespace zolt::field::detail
