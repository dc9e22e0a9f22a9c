#include "zolt/field/detail/typed_bounds.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/operand_ends.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

/// The bracket that closes a bound which that sign opens; none: U+0000.
char16_t closeOf(char16_t open) { return open == u'(' ? u')' : open == u'{' ? u'}' : u'\0'; }

/// Whether the sign or word binds looser than a product.
bool endsProduct(wstring const& sign, OperatorListC const& operators) {
  if (math::common::isMinus(sign[0]) || math::common::isRelation(sign[0])) return true;
  auto const op = operators.lookupText(sign, OPERATOR_BETWEEN);
  auto const times = operators.lookup(u"*");
  return op && times && op->getPrecedence() > times->getPrecedence();
}

enum BoundsPartE {
  PART_LOWER,  ///< a row below the sign but the last of these
  PART_LAST_LOWER,
  PART_UPPER,
  PART_BODY,  ///< what the sign applies to, before the variable of an integral
  PART_LAST   ///< the last row, which a sign may leave
};

/// A row of a construct with bounds that ends at a place, perhaps in exponents and fractions at its end.
struct EndedRowS {
  Node4C const* row = nullptr;  ///< null: none does
  Node4C const* next = nullptr;
  BoundsPartE part = PART_LAST;
  bool isVariable = false;  ///< it is the last one and comes after what the sign applies to
  /// The first row below the sign while nothing is in it: what is above was typed first, "∫^b_a".
  Node4C const* lower = nullptr;
  bool isUpperFilled = false;
};

EndedRowS findEndedRow(PlaceS place, TypedBoundsS const& bounds) {
  Node4C const& construct = *bounds.construct;
  while (place && enclosingItem(*place.node) != &construct) place = afterFinishedItem(place);
  if (!place || !isAtRowEnd(place) || findOpenBracket(place)) return {};
  Node4C const& row = *place.node->getParent();
  OperatorWordsS const& words = construct.crefOperator()->crefWords();
  auto const rows = argumentRows(*construct.crefOperator(), construct.numChildren());
  auto const at = std::find(rows.begin(), rows.end(), row.findChildNumber());
  if (at == rows.end()) return {};
  if (bounds.isDerivative) return {&row, nullptr, PART_LAST, at != rows.begin()};
  unsigned long const numBounds = words.lowerRows + (words.hasUpperRow ? 1 : 0);
  Node4C const* const first = construct.child(rows.front());
  Node4C const* const lower = isEmptyRow(*first) ? first : nullptr;
  if (at + 1 == rows.end()) return {&row, nullptr, PART_LAST, rows.size() > numBounds + 1, lower};
  auto const number = static_cast<unsigned long>(at - rows.begin());
  BoundsPartE const part = number + 1 < words.lowerRows ? PART_LOWER
                           : number < words.lowerRows   ? PART_LAST_LOWER
                           : number < numBounds         ? PART_UPPER
                                                        : PART_BODY;
  bool const isUpperFilled =
      words.hasUpperRow && part == PART_LAST_LOWER && !isEmptyRow(*construct.child(at[1]));
  return {&row, construct.child(at[isUpperFilled ? 2 : 1]), part, false, lower, isUpperFilled};
}

/// What a character does at the end of a bound.
BoundsStepS stepInBound(PlaceS place, char16_t c, char16_t close, EndedRowS const& ended) {
  bool const isUpper = ended.part == PART_UPPER;
  if (isEmptyRow(*ended.row)) {
    bool const begins = (isUpper && c == u'^') || (close == u'\0' && closeOf(c));
    return {begins ? place : PlaceS(), false, false, closeOf(c)};
  }
  if (ended.part == PART_LOWER) return {};
  PlaceS const next = rowEnd(*ended.next);
  bool const goesUp = !isUpper && !ended.isUpperFilled;
  if (close != u'\0') return {c == close ? next : PlaceS(), false, goesUp, u'\0'};
  if (c == u'_' && isUpper && ended.lower) return {rowEnd(*ended.lower), false, false, u'\0'};
  if (c == u' ' || (c == u'^' && goesUp && isWord(*ended.row))) return {next, false, false, u'\0'};
  bool const opens = isUpper && (c == u'(' || c == u'|' || c == u'\\') && isWord(*ended.row);
  return {opens ? next : PlaceS(), opens, false, u'\0'};
}

/// After all of them, from the innermost, whose last rows end at the place; null when none does.
PlaceS afterBounds(PlaceS place, std::vector<TypedBoundsS> const& bounds) {
  PlaceS after;
  for (auto at = bounds.rbegin(); at != bounds.rend(); ++at) {
    EndedRowS const ended = findEndedRow(after ? after : place, *at);
    if (!ended.row || ended.next) break;
    after = placeAfter(*at->construct);
  }
  return after;
}

bool isAround(Node4C const& construct, PlaceS place) {
  Node4C const* item = enclosingItem(*place.node);
  while (item && item != &construct) item = enclosingItem(*item);
  return item;
}

/// Where "_" or "^" typed at the place begins the bounds of the construct around it, which is empty. Null: it
/// does not.
PlaceS beginBounds(PlaceS place, char16_t sign) {
  Node4C const* const item = sign == u'_' || sign == u'^' ? enclosingItem(*place.node) : nullptr;
  if (!item || item->getType() != NODE4_OPERATOR || !takesBounds(*item->crefOperator())) return {};
  for (unsigned long i = 0; i < item->numChildren(); ++i) {
    if (!isEmptyRow(*item->child(i))) return {};
  }
  auto const rows = argumentRows(*item->crefOperator(), item->numChildren());
  OperatorWordsS const& words = item->crefOperator()->crefWords();
  if (place.node->getParent() != item->child(rows.front()) || (sign == u'^' && !words.hasUpperRow)) return {};
  return sign == u'_' ? place : rowEnd(*item->child(rows[words.lowerRows]));
}

/// Whether an opening brace at the place begins an index, or the bounds of the construct whose name and "_"
/// end there: "x_{", "sum_{".
bool opensIndex(PlaceS place, OperatorListC const& operators) {
  wstring const& text = place.node->crefText();
  unsigned int const start = nameStart(text, place.pos);
  if (place.pos < start + 2 || text[place.pos - 1] != u'_') return false;
  auto const op = findConstruct(operators, text.substr(start, place.pos - 1 - start)).op;
  return (op && takesBounds(*op)) || findConstruct(operators, u"_").op;
}

BoundsStepS stepInBounds(PlaceS place, char16_t c, std::vector<TypedBoundsS> const& bounds,
                         OperatorListC const& operators, InputOptionsS const& options) {
  if (bounds.empty() || !isAround(*bounds.back().construct, place)) return {};
  EndedRowS const ended = findEndedRow(place, bounds.back());
  if (!ended.row) return {};
  if (ended.part < PART_BODY) return stepInBound(place, c, bounds.back().close, ended);
  if (isEmptyRow(*ended.row)) {
    bool const isAbove = c == u'_' && ended.lower && !ended.isVariable;
    return {isAbove ? rowEnd(*ended.lower) : c == u' ' ? place : PlaceS(), false, false, u'\0'};
  }
  if (ended.part == PART_BODY) return {};
  if (bounds.back().isDerivative && bounds.back().close != u'\0')
    return {c == bounds.back().close ? afterBounds(place, bounds) : PlaceS(), false, false, u'\0'};
  bool const ends = c == u')' || c == u',' || (ended.isVariable && !isWordCharacter(c)) ||
                    (endsOperandBefore(place, operators) && endsProduct(wstring(1, c), operators));
  PlaceS const at = ends ? afterBounds(place, bounds) : PlaceS();
  if (!at) return {};
  LeavingS const further = leaveBySign(at, c, operators, options);
  if (further.target) return {further.target, !further.complete, false, u'\0'};
  return {at, c != u' ', false, u'\0'};
}

}  // namespace

bool isWord(Node4C const& row) {
  wstring const& text = row.child(0)->crefText();
  return row.numChildren() == 1 && !text.empty() && std::all_of(text.begin(), text.end(), isWordCharacter);
}

bool isLoneDifferential(PlaceS place, OperatorListC const& operators) {
  wstring const& text = place.node->crefText();
  bool const isLone =
      place.pos >= 2 && text[place.pos - 2] == u'd' && wordStart(text, place.pos) == place.pos - 2;
  if (!isLone || math::common::isDigit(text[place.pos - 1])) return false;
  wstring const begun = text.substr(place.pos - 2, 2);
  auto const begins = [&](wstring const& word) { return word.compare(0, begun.size(), begun) == 0; };
  auto const& all = operators.crefInOrder();
  return !begins(u"delta") && std::none_of(all.begin(), all.end(), [&](OperatorBC const* op) {
    auto const& others = op->crefWords().names;
    return begins(op->getName()) || begins(op->getText()) ||
           std::any_of(others.begin(), others.end(), [&](auto const& other) { return begins(other.name); });
  });
}

bool takesBounds(OperatorBC const& op) { return op.crefWords().lowerRows > 0; }

void keepAround(std::vector<TypedBoundsS>& bounds, PlaceS place) {
  for (Node4C const* item = enclosingItem(*place.node); item && !bounds.empty();
       item = enclosingItem(*item)) {
    auto const found = std::find_if(bounds.rbegin(), bounds.rend(),
                                    [&](TypedBoundsS const& one) { return one.construct == item; });
    if (found == bounds.rend()) continue;
    bounds.erase(found.base(), bounds.end());
    return;
  }
  bounds.clear();
}

void adoptVariant(std::vector<TypedBoundsS>& bounds, PlaceS place) {
  Node4C const* const item = bounds.empty() ? nullptr : enclosingItem(*place.node);
  bool const isBounded = item && item->getType() == NODE4_OPERATOR && takesBounds(*item->crefOperator());
  if (isBounded && !isAround(*bounds.back().construct, place)) bounds.back() = {item, u'\0', false};
}

InputDecisionS decideInBounds(ViewZNT4C const& view, char16_t c, InputOptionsS const& options,
                              std::vector<TypedBoundsS> const& bounds, BoundsStepS& step) {
  step = {};
  InputDecisionS decision = decideInput(view, c, options);
  if (view.isSelected() || !options.leaving || !options.constructs) return decision;
  PlaceS const place = view.getSelection().caret;
  OperatorListC const& operators = view.crefOperatorList();
  if (c == u'{' && opensIndex(place, operators)) return {INPUT_TEXT, u"(", {}, {}};
  if (PlaceS const begun = beginBounds(place, c)) return {INPUT_MOVE, {}, begun, {}};
  char16_t const sign = c == u'{' || c == u'}' ? c : foldTyped(c, options);
  step = stepInBounds(place, sign, bounds, operators, options);
  if (!step.target) return decision;
  if (step.asComma) return decideInput(view, u',', options);
  if (!step.isTyped) return {INPUT_MOVE, {}, step.target, {}};
  if (decision.kind == INPUT_MOVE) decision = {INPUT_TEXT, wstring(1, sign), {}, {}};
  decision.target = step.target;
  return decision;
}

PlaceS leaveBoundsByWord(PlaceS place, wstring const& word, std::vector<TypedBoundsS> const& bounds,
                         OperatorListC const& operators) {
  return !bounds.empty() && endsProduct(word, operators) ? afterBounds(place, bounds) : PlaceS();
}

ReplacementS findDifferential(PlaceS place, std::vector<TypedBoundsS> const& bounds,
                              OperatorListC const& operators) {
  if (bounds.empty() || !isAround(*bounds.back().construct, place)) return {};
  EndedRowS const ended = findEndedRow(place, bounds.back());
  if (ended.part != PART_BODY || !ended.row || place.node->getParent() != ended.row) return {};
  if (!isLoneDifferential(place, operators)) return {};
  wstring const& text = place.node->crefText();
  unsigned int begin = place.pos - 2;
  while (begin > 0 && text[begin - 1] == u' ') --begin;
  if (begin == 0 && !place.node->goLeft()) return {};
  return {{place.node, begin}, place, text.substr(place.pos - 1, 1), {}, rowEnd(*ended.next)};
}

}  // namespace zolt::field::detail
