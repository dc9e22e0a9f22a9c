#include "zolt/field/detail/typed_bounds.h"

#include <algorithm>

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

/// The rows of a construct with bounds in the order in which they are typed.
enum BoundsRowE : std::size_t { ROW_VARIABLE, ROW_VALUE, ROW_UPPER };

/// Whether the row is one name or number.
bool isWord(Node4C const& row) {
  wstring const& text = row.child(0)->crefText();
  return row.numChildren() == 1 && !text.empty() && std::all_of(text.begin(), text.end(), isWordCharacter);
}

/// Whether the sign or word binds looser than a product.
bool endsProduct(wstring const& sign, OperatorListC const& operators) {
  if (math::common::isMinus(sign[0]) || math::common::isRelation(sign[0])) return true;
  auto const op = operators.lookupText(sign, OPERATOR_BETWEEN);
  auto const times = operators.lookup(u"*");
  return op && times && op->getPrecedence() > times->getPrecedence();
}

/// A row of a construct with bounds that ends at a place, perhaps in exponents and fractions at its end.
struct EndedRowS {
  Node4C const* row = nullptr;  ///< null: none does
  std::size_t number = 0;
  Node4C const* next = nullptr;  ///< null: it is the last one
  PlaceS end;
};

EndedRowS findEndedRow(PlaceS place, Node4C const& construct) {
  while (place && enclosingItem(*place.node) != &construct) place = afterFinishedItem(place);
  if (!place || !isAtRowEnd(place) || findOpenBracket(place)) return {};
  Node4C const& row = *place.node->getParent();
  auto const rows = argumentRows(*construct.crefOperator(), construct.numChildren());
  auto const at = std::find(rows.begin(), rows.end(), row.findChildNumber());
  if (at == rows.end()) return {};
  Node4C const* const next = at + 1 == rows.end() ? nullptr : construct.child(at[1]);
  return {&row, static_cast<std::size_t>(at - rows.begin()), next, place};
}

/// What a sign does at the end of a row before the last one.
LeavingS leaveBound(PlaceS place, char16_t sign, EndedRowS const& ended) {
  bool const isUpper = ended.number == ROW_UPPER;
  if (isEmptyRow(*ended.row)) return {isUpper && sign == u'^' ? place : PlaceS(), true};
  if (isUpper && sign == u' ') return {rowEnd(*ended.next), true};
  bool const opens = isUpper && (sign == u'(' || sign == u'|') && isWord(*ended.row);
  return {opens ? rowEnd(*ended.next) : PlaceS(), false};
}

/// After all of them, from the innermost, whose last rows end at the place; null when none does.
PlaceS afterBounds(PlaceS place, TypedBoundsT const& bounds) {
  PlaceS after;
  for (auto at = bounds.rbegin(); at != bounds.rend(); ++at) {
    EndedRowS const ended = findEndedRow(after ? after : place, **at);
    if (!ended.row || ended.next) break;
    after = placeAfter(**at);
  }
  return after;
}

}  // namespace

bool takesBounds(OperatorBC const& op) {
  unsigned long const value = op.crefWords().valueRow;
  auto const rows = argumentRows(op, op.getInsertedRows());
  return value != 0 && rows.size() > ROW_UPPER && rows[ROW_VALUE] == value;
}

void keepAround(TypedBoundsT& bounds, PlaceS place) {
  for (Node4C const* item = enclosingItem(*place.node); item && !bounds.empty();
       item = enclosingItem(*item)) {
    auto const found = std::find(bounds.rbegin(), bounds.rend(), item);
    if (found == bounds.rend()) continue;
    bounds.erase(found.base(), bounds.end());
    return;
  }
  bounds.clear();
}

void adoptVariant(TypedBoundsT& bounds, PlaceS place) {
  Node4C const* const item = bounds.empty() ? nullptr : enclosingItem(*place.node);
  bool const isBounded = item && item->getType() == NODE4_OPERATOR && takesBounds(*item->crefOperator());
  if (!isBounded) return;
  for (Node4C const* outer = item; outer; outer = enclosingItem(*outer)) {
    if (outer == bounds.back()) return;
  }
  bounds.back() = item;
}

bool endsValue(PlaceS place, char16_t sign, TypedBoundsT const& bounds) {
  EndedRowS const ended = sign == u')' && !bounds.empty() ? findEndedRow(place, *bounds.back()) : EndedRowS();
  return ended.row && ended.number == ROW_VALUE && !isEmptyRow(*ended.row);
}

LeavingS leaveBounds(PlaceS place, char16_t sign, TypedBoundsT const& bounds, OperatorListC const& operators,
                     InputOptionsS const& options) {
  EndedRowS const ended = bounds.empty() ? EndedRowS() : findEndedRow(place, *bounds.back());
  if (!ended.row) return {};
  if (ended.next) return leaveBound(place, sign, ended);
  if (isEmptyRow(*ended.row)) return {sign == u' ' ? place : PlaceS(), true};
  bool const ends = sign == u')' || sign == u',' ||
                    (endsOperandBefore(place, operators) && endsProduct(wstring(1, sign), operators));
  PlaceS const at = ends ? afterBounds(place, bounds) : PlaceS();
  if (!at) return {};
  LeavingS const further = leaveBySign(at, sign, operators, options);
  return further.target ? further : LeavingS{at, false};
}

PlaceS leaveBoundsByWord(PlaceS place, wstring const& word, TypedBoundsT const& bounds,
                         OperatorListC const& operators) {
  return endsProduct(word, operators) ? afterBounds(place, bounds) : PlaceS();
}

PlaceS afterUpperGroup(PlaceS place, TypedBoundsT const& bounds) {
  Node4C const* const construct = bounds.empty() ? nullptr : enclosingItem(*place.node);
  if (!construct || construct != bounds.back()) return {};
  auto const rows = argumentRows(*construct->crefOperator(), construct->numChildren());
  Node4C const& row = *place.node->getParent();
  bool const isUpper = rows.size() > ROW_UPPER + 1 && row.findChildNumber() == rows[ROW_UPPER];
  bool const isTyped = isWholeGroup(row) && row.numChildren() > 3 && row.child(1)->getType() == NODE4_OPEN;
  return isUpper && isTyped ? rowEnd(*construct->child(rows.back())) : PlaceS();
}

}  // namespace zolt::field::detail
