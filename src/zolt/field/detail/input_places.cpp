#include "zolt/field/detail/input_places.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

bool isCallConstruct(Node4C const& item) {
  return item.getType() == NODE4_OPERATOR && isWrittenAsCall(*item.crefOperator());
}

/// The ")" just after the place when the row's brackets balance without a further one; else null.
Node4C const* findClosedAlready(PlaceS place) {
  Node4C const& row = *place.node->getParent();
  if (place.pos < place.node->sizeText() || hasSuppliedOpen(row) || hasSuppliedClose(row)) return nullptr;
  Node4C const* const next = place.node->goRight();
  return next && next->getType() == NODE4_CLOSE ? next : nullptr;
}

/// The place after the item around `place`, whatever the item, when its row ends at `place`; else null.
PlaceS afterItem(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  return item && isAtRowEnd(place) ? placeAfter(*item) : PlaceS();
}

PlaceS nextArgument(Node4C const& construct, Node4C const& row) {
  auto const rows = argumentRows(*construct.crefOperator(), construct.numChildren());
  auto at = std::find(rows.begin(), rows.end(), row.findChildNumber());
  if (at == rows.end() || ++at == rows.end() || *at >= construct.numChildren()) return {};
  return rowEnd(*construct.child(*at));
}

/// ")": past the bracket that already closes the pair, else after the construct that is written with
/// brackets, else out of exponents and fractions to a row with an open bracket. ",": to the construct's next
/// argument, or out to a row with an open bracket.
LeavingS leaveByBracketSign(PlaceS place, char16_t sign) {
  bool const closes = sign == u')';
  for (PlaceS at = place; at; at = afterItem(at)) {
    if (findOpenBracket(at)) {
      Node4C const* const closed = closes ? findClosedAlready(at) : nullptr;
      if (closed) return {placeAfter(*closed), true};
      return {at == place ? PlaceS() : at, false};
    }
    Node4C const* const item = enclosingItem(*at.node);
    if (!item || !isCallConstruct(*item) || !isAtRowEnd(at)) continue;
    PlaceS const next = closes ? placeAfter(*item) : nextArgument(*item, *at.node->getParent());
    if (next) return {next, true};
  }
  return {};
}

enum LeaveE : unsigned { LEAVE_NOTHING = 0, LEAVE_EXPONENTS = 1, LEAVE_FRACTIONS = 2, LEAVE_BOTH = 3 };

/// After all such items that end here; null when none does.
PlaceS afterAllFinishedItems(PlaceS place, unsigned leave) {
  PlaceS target;
  for (PlaceS after = afterFinishedItem(place); after; after = afterFinishedItem(target)) {
    bool const isPower = after.node->goLeft()->getType() == NODE4_POWER;
    if ((leave & (isPower ? LEAVE_EXPONENTS : LEAVE_FRACTIONS)) == 0) break;
    target = after;
  }
  return target;
}

/// What a sign between two operands ends.
unsigned endedBySign(InputOptionsS const& options) {
  return (options.exponents ? LEAVE_EXPONENTS : LEAVE_NOTHING) |
         (options.fractions ? LEAVE_FRACTIONS : LEAVE_NOTHING);
}

bool isBetweenOperands(char16_t sign, OperatorListC const& operators) {
  constexpr std::u16string_view signs = u"+*/:";
  if (signs.find(sign) != signs.npos || math::common::isMinus(sign)) return true;
  return !math::common::isRelation(sign) && operators.lookupText(wstring(1, sign), OPERATOR_BETWEEN);
}

/// Whether "=" typed at the place makes "≠" of the "!" there.
bool awaitsNotEqual(PlaceS place) {
  return place.pos > 0 && place.node->crefText()[place.pos - 1] == u'!' &&
         !endsCounted({place.node, place.pos - 1});
}

PlaceS beforeBlanks(PlaceS place) {
  while (place.pos > 0 && place.node->crefText()[place.pos - 1] == u' ') --place.pos;
  return place;
}

/// The linear operator whose text is the word between two places of one text, as "mod"; null: none.
PointerTC<OperatorBC> findWord(wstring const& text, unsigned int begin, unsigned int end,
                               OperatorListC const& operators) {
  auto op = begin < end ? operators.lookupText(text.substr(begin, end - begin)) : nullptr;
  return op && op->isLinear() ? op : nullptr;
}

/// Whether a sign typed at the place may be that of a number's exponent: "1e".
bool awaitsExponent(PlaceS place) {
  wstring const& text = place.node->crefText();
  unsigned int const start = wordStart(text, place.pos);
  if (start + 1 >= place.pos || !math::common::startsNumber(text[start])) return false;
  wstring const number = text.substr(start, place.pos - start) + u"+1";
  return math::common::findNumberEnd(number, 0, math::common::LONE_EXPONENT_LEFT) == number.size();
}

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

/// Whether a sign that comes after its operand ends at the place.
bool isPostfixAt(PlaceS place, OperatorListC const& operators) {
  return place.pos > 0 &&
         operators.lookupText(place.node->crefText().substr(place.pos - 1, 1), OPERATOR_AFTER);
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

PlaceS afterFinishedItem(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  if (!item || isCallConstruct(*item) || !isAtRowEnd(place) || findOpenBracket(place)) return {};
  Node4C const& row = *place.node->getParent();
  if (isEmptyRow(row) || row.goRight()) return {};
  return placeAfter(*item);
}

LeavingS leaveBySign(PlaceS place, char16_t sign, OperatorListC const& operators,
                     InputOptionsS const& options) {
  if (isBetweenOperands(sign, operators) && endsOperandBefore(place, operators)) {
    if ((sign == u'+' || math::common::isMinus(sign)) && awaitsExponent(place)) return {};
    return {afterAllFinishedItems(place, endedBySign(options)), false};
  }
  if (options.exponents && sign == u'(' && !endsNameAt(place) && endsOperandAt(place)) {
    return {afterAllFinishedItems(place, LEAVE_EXPONENTS), false};
  }
  if (!options.leaving) return {};
  if (PlaceS const after = leaveByClosingSign(place, sign, operators)) return {after, true};
  if (sign == u')' || sign == u',') return leaveByBracketSign(place, sign);
  if (math::common::isRelation(sign)) {
    bool const isHalf = sign == u'=' && options.letters && awaitsNotEqual(place);
    return {isHalf ? PlaceS() : afterAllFinishedItems(place, LEAVE_BOTH), false};
  }
  PlaceS const after = sign == u' ' ? afterFinishedItem(place) : PlaceS();
  return {after, bool{after}};
}

PlaceS findEndedArgument(PlaceS place) {
  for (PlaceS at = place; at && !findOpenBracket(at); at = afterItem(at)) {
    Node4C const* const item = enclosingItem(*at.node);
    if (item && isCallConstruct(*item) && isAtRowEnd(at)) return at;
  }
  return {};
}

PlaceS leaveByValueSign(PlaceS place, wstring const& signs) {
  Node4C const* const item = enclosingItem(*place.node);
  if (!item || item->getType() != NODE4_OPERATOR || !isAtRowEnd(place) || findOpenBracket(place)) return {};
  OperatorWordsS const& words = item->crefOperator()->crefWords();
  unsigned long const row = place.node->getParent()->findChildNumber();
  if (words.valueRow == 0 || row + 1 != words.valueRow || signs.find(words.valueSign) == signs.npos)
    return {};
  // The first half of "<=" is no variable.
  constexpr std::u16string_view halves = u"<>!:=";
  bool const isHalf = words.valueSign == u'=' && place.pos > 0 &&
                      halves.find(place.node->crefText()[place.pos - 1]) != halves.npos;
  return isHalf ? PlaceS() : rowEnd(*item->child(words.valueRow));
}

PlaceS leaveByOperator(PlaceS place, OperatorBC const& op, OperatorListC const& operators,
                       InputOptionsS const& options) {
  if (!endsOperandBefore(place, operators)) return {};
  if (op.isLinear() && op.getArity() == 2) return afterAllFinishedItems(place, endedBySign(options));
  bool const opens = op.crefWords().closingSign != u'\0' && options.exponents;
  return opens ? afterAllFinishedItems(place, LEAVE_EXPONENTS) : PlaceS();
}

PlaceS leaveByReplacement(PlaceS place, OperatorBC const& op, InputOptionsS const& options) {
  bool const isRelation = op.getText().size() == 1 && math::common::isRelation(op.getText()[0]);
  if (isRelation && options.leaving) return afterAllFinishedItems(place, LEAVE_BOTH);
  bool const isWord = op.isLinear() && op.getPlace() == OPERATOR_BETWEEN && isWordCharacter(op.getName()[0]);
  return isWord ? afterAllFinishedItems(place, endedBySign(options)) : PlaceS();
}

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

PlaceS leaveByClosingSign(PlaceS place, char16_t sign, OperatorListC const& operators) {
  if (sign == u'\0') return {};
  for (PlaceS at = place; at; at = afterFinishedItem(at)) {
    Node4C const* const item = enclosingItem(*at.node);
    if (!item || item->getType() != NODE4_OPERATOR || item->crefOperator()->crefWords().closingSign != sign) {
      continue;
    }
    if (!isAtRowEnd(at) || findOpenBracket(at) || isEmptyRow(*at.node->getParent())) return {};
    bool const opens = item->crefOperator()->crefWords().signs.find(sign) != wstring::npos;
    return !opens || endsOperandBefore(place, operators) ? placeAfter(*item) : PlaceS();
  }
  return {};
}

PointerTC<OperatorBC> findDoubled(PlaceS place, char16_t sign, OperatorListC const& operators) {
  Node4C const* const outer = place.pos == 0 ? place.node->goLeft() : nullptr;
  if (!outer || outer->getType() != NODE4_OPERATOR || outer->numChildren() != 1) return nullptr;
  Node4C const& row = *outer->child(0);
  bool const holdsOne = row.numChildren() == 3 && row.child(0)->sizeText() + row.child(2)->sizeText() == 0;
  OperatorBC const* const op = outer->crefOperator();
  if (!holdsOne || row.child(1)->crefOperator() != op || op->crefWords().closingSign != sign) return nullptr;
  for (OperatorBC const* const other : operators.crefInOrder()) {
    if (other->crefWords().doubledName == outer->crefText()) return operators.lookup(other->getName());
  }
  return nullptr;
}

InsideSignS findByInsideSign(OperatorListC const& operators, PlaceS place, char16_t sign) {
  PlaceS at = place;
  bool isFinished = true;  // what ends at the place and is between it and `at`
  for (Node4C const* item = enclosingItem(*at.node); item; item = enclosingItem(*item)) {
    if (findOpenBracket(at)) return {};
    bool const isConstruct = item->getType() == NODE4_OPERATOR;
    for (std::size_t i = 0; isConstruct && i < item->crefOperator()->crefWords().insideSigns.size(); ++i) {
      auto const& inside = item->crefOperator()->crefWords().insideSigns[i];
      auto op = inside.sign == sign ? operators.lookup(inside.name) : nullptr;
      if (op && op->appliesAt(place)) return {op, {}};
      if (op && isFinished && op->appliesAt(at)) return {op, at};
    }
    bool const goesOn = sign == u',' && isCallConstruct(*item) && isAtRowEnd(at) &&
                        nextArgument(*item, *at.node->getParent());
    if (goesOn || (sign == u')' && isCallConstruct(*item))) return {};
    isFinished = isFinished && afterFinishedItem(at);
    at = placeAfter(*item);
  }
  return {};
}

PlaceS afterGroup(PlaceS place) {
  Node4C const& row = *place.node->getParent();
  bool const isTyped = isWholeGroup(row) && row.numChildren() > 3 && row.child(1)->getType() == NODE4_OPEN;
  return isTyped ? afterFinishedItem(place) : PlaceS();
}

bool bindsToGroup(char16_t typed, OperatorListC const& operators) {
  constexpr std::u16string_view signs = u"^°ʳ";
  return signs.find(typed) != signs.npos || math::common::loweredSign(typed) != u'\0' ||
         operators.lookupText(wstring(1, typed), OPERATOR_AFTER);
}

bool beginsWithSign(SelectionS const& stretch, OperatorListC const& operators) {
  auto const [first, last] = stretch;
  if (first.node == last.node) return false;
  auto const op = operators.lookupText(first.node->crefText().substr(first.pos));
  return op && op->isLinear();
}

PlaceS leaveByWord(PlaceS place, OperatorListC const& operators, InputOptionsS const& options,
                   PlaceS& begin) {
  wstring const& text = place.node->crefText();
  PlaceS const start{place.node, wordStart(text, place.pos)};
  auto const word = findWord(text, start.pos, place.pos, operators);
  if (!word || word->getArity() != 2 || !endsOperandBefore(start, operators)) return {};
  begin = beforeBlanks(start);
  return afterAllFinishedItems(place, endedBySign(options));
}

bool isRaising(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  return item && item->getType() == NODE4_POWER && !endsOperandAt(place);
}

bool endsNameAt(PlaceS place) {
  wstring const& text = place.node->crefText();
  unsigned int const start = wordStart(text, place.pos);
  return start < place.pos && !math::common::startsNumber(text[start]);
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

bool hasComma(PlaceS begin, PlaceS end) {
  unsigned long depth = 0;
  for (Node4C const* item = begin.node; item; item = item->goRight()) {
    if (isOpeningBracket(item->getType())) ++depth;
    if (isClosingBracket(item->getType())) --depth;
    if (item->getType() == NODE4_TEXT && depth == 0) {
      std::size_t const comma = item->crefText().find(u',', item == begin.node ? begin.pos : 0);
      if (comma < (item == end.node ? end.pos : wstring::npos)) return true;
    }
    if (item == end.node) return false;
  }
  return false;
}

}  // namespace zolt::field::detail
