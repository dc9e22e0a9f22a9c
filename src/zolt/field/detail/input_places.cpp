#include "zolt/field/detail/input_places.h"

#include <algorithm>
#include <string_view>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
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

/// The place after the exponent or fraction whose last row ends at `place`, when no bracket in that row is
/// open; else null.
PlaceS afterFinishedItem(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  if (!item || isCallConstruct(*item) || !isAtRowEnd(place) || findOpenBracket(place)) return {};
  Node4C const& row = *place.node->getParent();
  if (isEmptyRow(row) || row.goRight()) return {};
  return placeAfter(*item);
}

/// The place after the item around `place`, whatever the item, when its row ends at `place`; else null.
PlaceS afterItem(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  return item && isAtRowEnd(place) ? placeAfter(*item) : PlaceS();
}

PlaceS nextArgument(Node4C const& construct, Node4C const& row) {
  auto const rows = argumentRows(*construct.crefOperator());
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

/// To the second of two rows of a construct that shows "=" between them; null elsewhere.
PlaceS goToValue(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  if (!item || !isAtRowEnd(place) || findOpenBracket(place)) return {};
  Node4C const& row = *place.node->getParent();
  if (item->getType() != NODE4_OPERATOR) return {};
  unsigned long const valueRow = item->crefOperator()->crefWords().valueRow;
  return valueRow > 0 && row.findChildNumber() + 1 == valueRow ? rowEnd(*item->child(valueRow)) : PlaceS();
}

enum LeaveE { LEAVE_EXPONENTS, LEAVE_EXPONENTS_AND_FRACTIONS };

/// After all such items that end here; null when none does.
PlaceS afterAllFinishedItems(PlaceS place, LeaveE leave) {
  PlaceS target;
  for (PlaceS after = afterFinishedItem(place); after; after = afterFinishedItem(target)) {
    if (leave == LEAVE_EXPONENTS && after.node->goLeft()->getType() != NODE4_POWER) break;
    target = after;
  }
  return target;
}

}  // namespace

LeavingS leaveBySign(PlaceS place, char16_t sign, InputOptionsS const& options) {
  bool const endsExponent =
      sign == u'+' || math::common::isMinus(sign) || (sign == u'(' && !endsNameAt(place));
  if (options.exponents && endsExponent && endsOperandAt(place))
    return {afterAllFinishedItems(place, LEAVE_EXPONENTS), false};
  if (!options.leaving) return {};
  if (PlaceS const after = leaveByClosingSign(place, sign)) return {after, true};
  if (sign == u')' || sign == u',') return leaveByBracketSign(place, sign);
  PlaceS const value = sign == u'=' ? goToValue(place) : PlaceS();
  if (value) return {value, true};
  if (math::common::isRelation(sign))
    return {afterAllFinishedItems(place, LEAVE_EXPONENTS_AND_FRACTIONS), false};
  PlaceS const after = sign == u' ' ? afterFinishedItem(place) : PlaceS();
  return {after, bool{after}};
}

PlaceS leaveByClosingSign(PlaceS place, char16_t sign) {
  Node4C const* const item = enclosingItem(*place.node);
  if (!item || item->getType() != NODE4_OPERATOR || sign == u'\0') return {};
  if (item->crefOperator()->crefWords().closingSign != sign) return {};
  if (!isAtRowEnd(place) || findOpenBracket(place) || isEmptyRow(*place.node->getParent())) return {};
  return placeAfter(*item);
}

PlaceS afterGroup(PlaceS place) {
  Node4C const& row = *place.node->getParent();
  bool const isTyped = isWholeGroup(row) && row.numChildren() > 3 && row.child(1)->getType() == NODE4_OPEN;
  return isTyped ? afterFinishedItem(place) : PlaceS();
}

bool bindsToGroup(char16_t typed) {
  constexpr std::u16string_view signs = u"^!°";
  return signs.find(typed) != signs.npos || math::common::loweredSign(typed) != u'\0';
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
