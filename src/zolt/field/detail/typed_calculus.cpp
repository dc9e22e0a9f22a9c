#include "zolt/field/detail/typed_calculus.h"

#include "zolt/common/signs.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/name_factors.h"
#include "zolt/field/detail/typed_bounds.h"
#include "zolt/field/detail/typed_products.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

constexpr char16_t partial = u'∂';

/// A row that is one text with one exponent at most, apart from brackets that were just opened at its end.
struct RaisedTextS {
  wstring text;
  Node4C const* exponent = nullptr;  ///< its row; null: none
  bool isAll = false;
};

RaisedTextS readRaised(Node4C const& row, Node4C const* end) {
  RaisedTextS raised;
  Node4C const* item = row.child(0);
  raised.text = item->crefText();
  item = item->goRight();
  if (item && item->getType() == NODE4_POWER) {
    raised.exponent = item->child(0);
    item = item->goRight();
    if (item->sizeText() > 0) return raised;
    item = item->goRight();
  }
  raised.isAll = !item || item == end;
  return raised;
}

/// Whether two exponents are the same word, or both are missing.
bool isSameOrder(Node4C const* first, Node4C const* second) {
  if (!first || !second) return first == second;
  return isWord(*first) && isWord(*second) && first->child(0)->crefText() == second->child(0)->crefText();
}

/// What is above and below the bar of a derivative, besides its operand.
struct DerivativeS {
  wstring name;  ///< of the construct; empty: it is none
  wstring variable;
  Node4C const* order = nullptr;  ///< null: the first
};

bool isDerivativeSign(char16_t c) { return c == u'd' || c == partial; }

/// `open`: a bracket at the end of the denominator that is no part of it; null: none. `isFilled`: what is
/// differentiated follows the "d" above the bar.
DerivativeS readDerivative(Node4C const& fraction, Node4C const* open, bool isFilled) {
  DerivativeS derivative;
  RaisedTextS const above = readRaised(*fraction.child(0), nullptr);
  RaisedTextS const below = readRaised(*fraction.child(1), open);
  char16_t const sign = above.text.empty() ? u'\0' : above.text[0];
  bool const isD = isDerivativeSign(sign) && (isFilled || (above.text.size() == 1 && above.isAll));
  if (!isD || !below.isAll || below.text.size() < 2 || below.text[0] != sign) return derivative;
  std::size_t const begin = std::min(below.text.find_first_not_of(u' ', 1), below.text.size() - 1);
  wstring const variable = toMeantName(below.text.substr(begin));
  bool const isOneLetter = variable.size() == 1 || variable[1] == u'_';
  bool const isName = isWordCharacter(variable[0]) && !math::common::isDigit(variable[0]);
  // Above "f" stands an exponent of its own.
  Node4C const* const order = above.text.size() == 1 ? above.exponent : nullptr;
  if (!isName || !isOneLetter || !isSameOrder(order, below.exponent)) return derivative;
  derivative.name = sign == partial ? u"pdiff" : u"diff";
  derivative.variable = variable;
  derivative.order = order;
  return derivative;
}

/// The construct for a derivative; null: there is none.
PointerTC<OperatorBC> findDerivativeOperator(DerivativeS const& derivative, OperatorListC const& operators) {
  if (derivative.name.empty()) return nullptr;
  auto simple = operators.lookup(derivative.name);
  return simple && derivative.order ? findSharing(operators, *simple, 3) : simple;
}

bool isFraction(Node4C const* item, OperatorListC const& operators) {
  return item && item->getType() == NODE4_OPERATOR && item->crefOperator() == operators.lookup(u"/").get();
}

/// Whether an integral has bounds on either side of its sign.
bool isIntegral(OperatorBC const& op) { return op.crefWords().lowerRows == 1 && op.crefWords().hasUpperRow; }

/// The derivative that "d/dx" becomes when an operand begins after it.
ConstructReplacementS findDerivative(ViewZNT4C const& view, char16_t typed) {
  PlaceS const caret = view.getSelection().caret;
  OperatorListC const& operators = view.crefOperatorList();
  bool const isCall = typed == u'(';
  // What was typed is after the fraction, or at the end of what is below its bar.
  Node4C const* const open = isCall && caret.pos == 0 ? caret.node->goLeft() : nullptr;
  if (isCall && (!open || open->getType() != NODE4_OPEN)) return {};
  PlaceS const end = open ? placeBefore(*open) : caret;
  bool const isLetter = !isCall && typed != u' ';
  wstring const before = end.node->crefText().substr(0, isLetter ? end.pos - 1 : end.pos);
  bool const isAfter = before.find_first_not_of(u' ') == before.npos;
  Node4C const* fraction = isAfter ? end.node->goLeft() : nullptr;
  bool const isInside = !isFraction(fraction, operators) && !isLetter;
  if (isInside) fraction = enclosingItem(*end.node);
  bool const isBelow =
      isInside && isFraction(fraction, operators) && end.node->getParent()->findChildNumber() == 1;
  if (!isFraction(fraction, operators) || (isInside && !isBelow)) return {};
  if (isInside && isCall && !isAtRowEnd(caret) &&
      !(hasSuppliedClose(*end.node->getParent()) && findPartner(*open) &&
        isAtRowEnd(placeAfter(*findPartner(*open)))))
    return {};
  if (isInside && !isCall && !isAtRowEnd(caret)) return {};
  DerivativeS const derivative = readDerivative(*fraction, isInside ? open : nullptr, false);
  ConstructReplacementS found;
  found.op = findDerivativeOperator(derivative, operators);
  if (!found.op) return found;
  auto const rows = argumentRows(*found.op, found.op->getInsertedRows());
  found.begin = placeBefore(*fraction);
  found.end = isInside ? placeAfter(*fraction) : caret;
  if (derivative.order) found.contents = {{wholeRow(*derivative.order), rows[2]}};
  found.marks = {{derivative.variable, rows[1]}};
  if (isLetter) found.marks.push_back({wstring(1, typed), rows[0]});
  found.caretRow = rows[0];
  return found;
}

/// The integral that "int_0" becomes when "^" was just typed after it.
ConstructReplacementS findRaisedIntegral(ViewZNT4C const& view) {
  PlaceS const caret = view.getSelection().caret;
  Node4C const* const power = enclosingItem(*caret.node);
  if (!power || power->getType() != NODE4_POWER || !isEmptyRow(*power->child(0))) return {};
  PlaceS const end = placeBefore(*power);
  unsigned int const start = nameStart(end.node->crefText(), end.pos);
  wstring const name = end.node->crefText().substr(start, end.pos - start);
  std::size_t const mark = name.find(u'_');
  if (mark == name.npos || mark == 0 || mark + 1 == name.size()) return {};
  auto op = findConstruct(view.crefOperatorList(), name.substr(0, mark)).op;
  if (!op || !isIntegral(*op)) return {};
  auto const rows = argumentRows(*op, op->getInsertedRows());
  ConstructReplacementS found;
  found.begin = {end.node, start};
  found.end = placeAfter(*power);
  found.marks = {{toMeantName(name.substr(mark + 1)), rows[0]}};
  found.caretRow = rows[1];
  found.op = std::move(op);
  return found;
}

/// The integral without bounds that one becomes when "x dx" was just typed in its first place.
ConstructReplacementS findIndefinite(ViewZNT4C const& view) {
  PlaceS const place = view.getSelection().caret;
  Node4C const* const construct = enclosingItem(*place.node);
  if (!construct || construct->getType() != NODE4_OPERATOR || !isIntegral(*construct->crefOperator()) ||
      !isAtRowEnd(place) || !isLoneDifferential(place, view.crefOperatorList()))
    return {};
  auto const rows = argumentRows(*construct->crefOperator(), construct->numChildren());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Node4C const* const row = construct->child(rows[i]);
    if (i == 0 ? row != place.node->getParent() : !isEmptyRow(*row)) return {};
  }
  ConstructReplacementS found;
  found.op = findSharing(view.crefOperatorList(), *construct->crefOperator(), 2);
  if (!found.op) return found;
  wstring const& text = place.node->crefText();
  PlaceS end{place.node, place.pos - 2};
  while (end.pos > 0 && text[end.pos - 1] == u' ') --end.pos;
  PlaceS begin = rowStart(*place.node->getParent());
  while (begin != end && begin.pos < begin.node->sizeText() && begin.node->crefText()[begin.pos] == u' ')
    ++begin.pos;
  if (begin == end) return {};
  auto const taking = argumentRows(*found.op, found.op->getInsertedRows());
  found.begin = placeBefore(*construct);
  found.end = placeAfter(*construct);
  found.contents = {{{begin, end}, taking[0]}};
  found.marks = {{text.substr(place.pos - 1, 1), taking[1]}};
  found.caretRow = taking[1];
  return found;
}

}  // namespace

ConstructReplacementS findCalculus(ViewZNT4C const& view, char16_t typed, TypedBoundsS& bounds) {
  if (typed == u'^') return findRaisedIntegral(view);
  if (typed != u' ' && typed != u'(' && !isWordCharacter(typed)) return {};
  ConstructReplacementS found = findDerivative(view, typed);
  bounds.isDerivative = bool{found.op};
  if (found.op && typed == u'(') bounds.close = u')';
  return found.op || !isWordCharacter(typed) ? found : findIndefinite(view);
}

ConstructReplacementS findFilledDerivative(OperatorListC const& operators, Node4C const& fraction) {
  ConstructReplacementS found;
  if (!isFraction(&fraction, operators)) return found;
  DerivativeS const derivative = readDerivative(fraction, nullptr, true);
  auto op = findDerivativeOperator(derivative, operators);
  if (!op) return found;
  Node4C const& above = *fraction.child(0);
  PlaceS begin = derivative.order ? placeAfter(*derivative.order->getParent()) : PlaceS{above.child(0), 1};
  wstring const& text = begin.node->crefText();
  while (begin.pos < text.size() && text[begin.pos] == u' ') ++begin.pos;
  if (begin == rowEnd(above)) return found;
  auto const rows = argumentRows(*op, op->getInsertedRows());
  found.begin = placeBefore(fraction);
  found.end = placeAfter(fraction);
  found.contents = {{{begin, rowEnd(above)}, rows[0]}};
  if (derivative.order) found.contents.push_back({wholeRow(*derivative.order), rows[2]});
  found.marks = {{derivative.variable, rows[1]}};
  found.caretRow = ConstructReplacementS::after_construct;
  found.op = std::move(op);
  return found;
}

PlaceS startOfPartial(PlaceS place) {
  Node4C const* const power = place.pos == 0 ? place.node->goLeft() : nullptr;
  PlaceS const end = power && power->getType() == NODE4_POWER ? placeBefore(*power) : place;
  bool const isPartial = end.pos > 0 && end.node->crefText()[end.pos - 1] == partial;
  return isPartial ? PlaceS{end.node, end.pos - 1} : PlaceS();
}

PlaceS startOfDividend(PlaceS end, OperatorListC const& operators) {
  PlaceS const derivative = startOfPartial(end);
  return derivative ? derivative : startOfProduct(end, operators);
}

bool isDifferentialBelow(PlaceS begin, wstring const& name) {
  Node4C const& row = *begin.node->getParent();
  if (name.size() != 2 || name[0] != u'd' || begin != rowStart(row) || row.findChildNumber() != 1)
    return false;
  wstring const& above = row.goLeft()->child(0)->crefText();
  return !above.empty() && above[0] == u'd';
}

}  // namespace zolt::field::detail
