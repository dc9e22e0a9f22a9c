#include "zolt/field/detail/typed_products.h"

#include <limits>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/operand_ends.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

/// Where the word or number begins that ends at `end`, with the sign of an exponent, as in "1e−3".
unsigned int operandStart(wstring const& text, unsigned int end) {
  unsigned int const start = wordStart(text, end);
  if (start < 3 || start == end || !(text[start - 1] == u'+' || math::common::isMinus(text[start - 1]))) {
    return start;
  }
  unsigned int const number = wordStart(text, start - 1);
  bool const goesOn = number + 1 < start && math::common::startsNumber(text[number]) &&
                      math::common::findNumberEnd(text, number, math::common::LONE_EXPONENT_LEFT) >= end;
  return goesOn ? number : start;
}

/// Walks to the left over the factors of a product.
class ProductWalkC {
 public:
  explicit ProductWalkC(OperatorListC const& operators) : operators_(operators) {}

  PlaceS findStart(PlaceS end, unsigned maxFactors) {
    at_ = end;
    while (factors_ < maxFactors && (stepText() || (at_.pos == 0 && stepItem()))) {
    }
    return start_;
  }
  /// Whether it is more than what a fraction takes by itself.
  bool isLonger() const { return factors_ > 1 || signed_; }

 private:
  /// Takes what ends at the place in its text. False when nothing of the product does.
  bool stepText() {
    at_ = beforeBlanks(at_);
    if (at_.pos == 0) return false;
    wstring const& text = at_.node->crefText();
    char16_t const c = text[at_.pos - 1];
    bool const isPostfix = isPostfixAt(at_, operators_);
    if (isPostfix || isTimes(c)) {
      joined_ = isPostfix && joined_;
      signed_ = signed_ || (isPostfix && (c != u'!' || isRaised_));
      --at_.pos;
      return true;
    }
    if (isPrefixOnly(c)) {
      start_ = at_ = {at_.node, at_.pos - 1};
      signed_ = true;
      return true;
    }
    if (!isWordCharacter(c)) {
      // The sign of a factor, "2∙−3"; that of a whole product stays before it, unless it would apply to more
      // than before: "−a mod b".
      PlaceS const before{at_.node, at_.pos - 1};
      bool const isSign = math::common::isMinus(c) || operators_.lookupText(wstring(1, c), OPERATOR_BEFORE);
      PlaceS const sign = isSign ? beforeBlanks(before) : PlaceS();
      bool const afterTimes = sign && endsWithTimes(sign);
      if (!afterTimes && !(sign && worded_ && !endsOperandBefore(before, operators_))) return false;
      at_ = afterTimes ? sign : before;
      if (!afterTimes) start_ = before;
      return afterTimes;
    }
    unsigned int const start = operandStart(text, at_.pos);
    if (auto const word = findWord(text, start, at_.pos, operators_)) {
      if (!bindsAsTimes(*word)) return false;
      at_.pos = start;
      joined_ = false;
      worded_ = true;
      return true;
    }
    signed_ = signed_ || start != wordStart(text, at_.pos);
    return take({at_.node, start}, math::common::startsNumber(text[start]));
  }

  /// Whether a times sign or a word that binds as one is before the place.
  bool endsWithTimes(PlaceS place) const {
    wstring const& text = place.node->crefText();
    if (place.pos > 0 && isTimes(text[place.pos - 1])) return true;
    auto const word = findWord(text, wordStart(text, place.pos), place.pos, operators_);
    return word && bindsAsTimes(*word);
  }

  bool isTimes(char16_t c) const {
    if (c < 0x80 || isWordCharacter(c)) return false;
    auto const op = operators_.lookupText(wstring(1, c), OPERATOR_BETWEEN);
    return op && bindsAsTimes(*op);
  }

  bool bindsAsTimes(OperatorBC const& word) const {
    auto const times = operators_.lookup(u"*");
    return times && word.getPrecedence() <= times->getPrecedence();
  }

  /// A sign such as "∇", which belongs to the factor after it, as "−" does not.
  bool isPrefixOnly(char16_t c) const {
    wstring const sign(1, c);
    return start_ && !isWordCharacter(c) && operators_.lookupText(sign, OPERATOR_BEFORE) &&
           !operators_.lookupText(sign, OPERATOR_BETWEEN) && !math::common::isMinus(c) && c != u'+';
  }

  bool stepItem() {
    Node4C const* const item = at_.node->goLeft();
    if (!item || isOpeningBracket(item->getType())) return false;
    if (item->getType() == NODE4_POWER) {
      at_ = placeBefore(*item);
      isRaised_ = true;
      return true;
    }
    if (!isClosingBracket(item->getType())) return take(placeBefore(*item), false);
    Node4C const* const open = findPartner(*item);
    if (!open) return false;
    PlaceS const before = placeBefore(*open);
    unsigned int const name =
        endsNameAt(before) ? wordStart(before.node->crefText(), before.pos) : before.pos;
    bool const called = !findWord(before.node->crefText(), name, before.pos, operators_);
    return take({before.node, called ? name : before.pos}, false);
  }

  /// Two numbers side by side are no product.
  bool take(PlaceS begin, bool isNumber) {
    if (joined_ && isNumber) return false;
    joined_ = isNumber;
    isRaised_ = false;
    start_ = at_ = begin;
    ++factors_;
    return true;
  }

  OperatorListC const& operators_;
  PlaceS at_;
  PlaceS start_;
  unsigned factors_ = 0;
  bool worded_ = false;    // with "mod" or "div"
  bool signed_ = false;    // a number has an exponent with a sign, or a factor "∇" before or "%" after it
  bool isRaised_ = false;  // an exponent is at the end of the factor that the walk is in
  bool joined_ = false;    // a number begins here, so none may end here
};

bool isAfterPower(PlaceS place) {
  Node4C const* const left = place.pos == 0 ? place.node->goLeft() : nullptr;
  return left && left->getType() == NODE4_POWER;
}

/// Where the operand begins, with its exponents, that a "^" after it would raise; null when there is none.
PlaceS startOfBase(PlaceS end, OperatorListC const& operators) {
  PlaceS start = ProductWalkC(operators).findStart(end, 1);
  if (!start || start.pos == start.node->sizeText()) return start;
  // A number before a name is a factor.
  wstring const& text = start.node->crefText();
  std::size_t const number =
      math::common::startsNumber(text[start.pos])
          ? math::common::findNumberEnd(text, start.pos, math::common::LONE_EXPONENT_LEFT)
          : start.pos;
  if (number < wordEnd(text, start.pos)) start.pos = static_cast<unsigned int>(number);
  return start;
}

bool startsOperand(PlaceS place) {
  wstring const& text = place.node->crefText();
  while (place.pos < text.size() && text[place.pos] == u' ') ++place.pos;
  if (place.pos < text.size()) return isWordCharacter(text[place.pos]);
  Node4C const* const item = place.node->goRight();
  return item && (isOpeningBracket(item->getType()) || item->getType() == NODE4_OPERATOR);
}

}  // namespace

PlaceS startOfProduct(PlaceS place, OperatorListC const& operators) {
  if (startsOperand(place)) return {};
  ProductWalkC walk(operators);
  PlaceS const start = walk.findStart(place, std::numeric_limits<unsigned>::max());
  return walk.isLonger() ? start : PlaceS();
}

PlaceS startOfPower(PlaceS place, OperatorListC const& operators) {
  place = beforeBlanks(place);
  return isAfterPower(place) ? startOfBase(place, operators) : PlaceS();
}

bool isBase(SelectionS const& stretch, OperatorListC const& operators) {
  PlaceS const end = stretch.caret;
  wstring const& text = end.node->crefText();
  bool const ends = end.pos == text.size() || !isWordCharacter(text[end.pos]);
  return ends && !isAfterPower(end) && startOfBase(end, operators) == stretch.anchor;
}

}  // namespace zolt::field::detail
