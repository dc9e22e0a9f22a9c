#include "zolt/field/detail/input_places.h"

#include <algorithm>
#include <string_view>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/operand_ends.h"
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

/// Whether a sign typed at the place may be that of a number's exponent: "1e".
bool awaitsExponent(PlaceS place) {
  wstring const& text = place.node->crefText();
  unsigned int const start = wordStart(text, place.pos);
  if (start + 1 >= place.pos || !math::common::startsNumber(text[start])) return false;
  wstring const number = text.substr(start, place.pos - start) + u"+1";
  return math::common::findNumberEnd(number, 0, math::common::LONE_EXPONENT_LEFT) == number.size();
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

bool beginsExponent(PlaceS place) {
  Node4C const* const left = place.pos == 0 ? place.node->goLeft() : nullptr;
  if (place.pos > 0 || (left && !isOpeningBracket(left->getType()))) return false;
  Node4C const* const item = enclosingItem(*place.node);
  bool const isBraced =
      item && item->getType() == NODE4_OPERATOR && item->crefOperator()->crefWords().closingSign == u'}';
  Node4C const* const power = isBraced ? enclosingItem(*item) : item;
  return power && power->getType() == NODE4_POWER;
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
