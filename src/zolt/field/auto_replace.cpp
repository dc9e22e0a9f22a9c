#include "zolt/field/auto_replace.h"

#include <algorithm>
#include <string_view>

#include "zolt/algexpr/cas_session.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/input_places.h"
#include "zolt/field/detail/name_factors.h"
#include "zolt/field/detail/operand_ends.h"
#include "zolt/field/detail/typed_calculus.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

InputDecisionS decideExponent(PlaceS place, bool selected, char16_t lowered) {
  wstring const text(1, lowered);
  bool const completes = math::common::isDigit(lowered) || lowered == u'n' || lowered == u'i';
  if (completes) return {INPUT_EXPONENT, text, {}, {}};
  return {!selected && isRaising(place) ? INPUT_TEXT : INPUT_OPEN_EXPONENT, text, {}, {}};
}

bool endsWith(PlaceS place, wstring const& text) {
  return place.pos >= text.size() &&
         place.node->crefText().compare(place.pos - text.size(), text.size(), text) == 0;
}

InputDecisionS decideSign(ViewZNT4C const& view, char16_t c, OperatorBC const& op,
                          InputOptionsS const& options) {
  OperatorListC const& operators = view.crefOperatorList();
  PlaceS const place = view.isSelected() ? PlaceS() : view.getSelection().caret;
  if (!place) return {INPUT_OPERATOR, op.getName(), {}, {}};
  // The second half of "&&".
  if (op.isLinear() && op.getArity() == 2 && endsWith(place, u" " + op.getText() + u" ")) {
    return {INPUT_MOVE, {}, place, {}};
  }
  PlaceS const behind = leaveByClosingSign(place, c, operators);
  if (behind) return {INPUT_MOVE, {}, behind, {}};
  return {INPUT_OPERATOR, op.getName(), leaveByOperator(place, op, operators, options), {}};
}

struct NameS {
  PlaceS begin;
  wstring text;
};

/// The name that ends at the place.
NameS nameEndingAt(PlaceS end) {
  wstring const& text = end.node->crefText();
  unsigned int const start = nameStart(text, end.pos);
  return {{end.node, start}, text.substr(start, end.pos - start)};
}

/// Whether a sign that is a name by itself, or the primes of a name, end at the place.
bool endsWholeName(PlaceS place) {
  wstring const& text = place.node->crefText();
  if (place.pos == 0) return false;
  bool const isIndex = place.pos > 1 && text[place.pos - 2] == u'_';
  char16_t const last = text[place.pos - 1];
  return last == math::common::prime_sign || (last == math::common::infinity_sign && !isIndex);
}

/// Whether a name with an index of digits ends at the place, "v_0".
bool endsCountedName(PlaceS place) {
  wstring const& text = place.node->crefText();
  unsigned int digits = place.pos;
  while (digits > 0 && math::common::isDigit(text[digits - 1])) --digits;
  return digits < place.pos && digits > 1 && text[digits - 1] == u'_' && isWordCharacter(text[digits - 2]);
}

/// Whether the last character before the caret begins another name, as "g" does in "f′g" and "t" in "v_0t".
bool beginsAnotherName(PlaceS caret) {
  if (caret.pos < 2) return false;
  PlaceS const before{caret.node, caret.pos - 1};
  char16_t const c = caret.node->crefText()[before.pos];
  if (c == u'_' || c == math::common::prime_sign || !isWordCharacter(c)) return false;
  if (endsWholeName(before)) return true;
  if (endsCountedName(before)) {
    // Typing must give the same as pasting.
    wstring const typed = nameEndingAt(caret).text;
    auto const read = exchange::fromPlainText(typed, math::algexpr::CASSessionBC::getSession());
    return read && read->getNode()->asParent();
  }
  if (c != math::common::infinity_sign) return false;
  NameS const name = nameEndingAt(before);
  return !name.text.empty() && name.text.back() != u'_';
}

/// After the order of a derivative as it is printed, "∂^2", "∇^2" or "d^2", at whose end the place is: a
/// letter there is what it applies to. Null elsewhere.
PlaceS leaveOrder(PlaceS place) {
  Node4C const* const item = enclosingItem(*place.node);
  if (!item || item->getType() != NODE4_POWER || !isAtRowEnd(place)) return {};
  wstring const& order = place.node->crefText();
  bool const isNumber = item->child(0)->numChildren() == 1 && !order.empty() &&
                        std::all_of(order.begin(), order.end(), math::common::isDigit);
  PlaceS const base = placeBefore(*item);
  constexpr std::u16string_view signs = u"∂∇";
  bool const isSign = base.pos > 0 && signs.find(base.node->crefText()[base.pos - 1]) != signs.npos;
  return isNumber && (isSign || nameEndingAt(base).text == u"d") ? placeAfter(*item) : PlaceS();
}

/// Whether a brace typed at the place begins the arguments of the function there, "max{a,b}", which the
/// reader of plain text knows.
bool opensArguments(PlaceS place, char16_t typed) {
  wstring const name = typed == u'{' ? nameEndingAt(place).text : wstring();
  if (name.size() < 2) return false;
  auto const read = exchange::fromPlainText(name + u"{x,y}", math::algexpr::CASSessionBC::getSession());
  return read && read->getNode()->getName() == name;
}

/// The character that a typed one means at the place: itself where an operator has it for its own, as "[" of
/// an interval, and else the sign that it looks like.
char16_t meantAt(PlaceS place, bool selected, char16_t typed, OperatorListC const& operators,
                 InputOptionsS const& options) {
  bool const isLookAlike = math::common::foldLookAlike(typed, math::common::LOOK_ALIKE_TYPED) != typed;
  auto const op = isLookAlike ? findBySign(operators, typed) : nullptr;
  bool const isOwn =
      (op && op->appliesAt(place)) ||
      (isLookAlike && !selected &&
       (findByInsideSign(operators, place, typed).op || leaveByClosingSign(place, typed, operators)));
  return isOwn ? typed : foldTyped(typed, options);
}

}  // namespace

InputDecisionS decideInput(ViewZNT4C const& view, char16_t typed, InputOptionsS const& options) {
  bool const selected = view.isSelected();
  PlaceS const place = view.getSelection().caret;
  if (char16_t const lowered = math::common::loweredSign(typed))
    return decideExponent(place, selected, lowered);
  if (!selected && opensArguments(place, typed)) return {INPUT_TEXT, u"(", {}, {}};
  if (unsigned const primes = math::common::countPrimes(typed)) {
    bool const hasName = !selected && !nameEndingAt(place).text.empty();
    return {INPUT_TEXT, hasName ? wstring(primes, math::common::prime_sign) : wstring(1, u'\''), {}, {}};
  }
  OperatorListC const& operators = view.crefOperatorList();
  char16_t const c = meantAt(place, selected, typed, operators, options);
  // Before a sign there, as in "{1, -2}" and "( -x)", a blank would keep it away from its operand.
  Node4C const* const left = place.pos == 0 ? place.node->goLeft() : nullptr;
  bool const begins = place.pos == 0 && (!left || isOpeningBracket(left->getType()));
  if (c == u' ' && begins && !selected && options.leaving) return {INPUT_MOVE, {}, place, {}};
  if (selected && (c == u'(' || c == u')')) return {INPUT_BRACKETS, {}, {}, {}};
  if (selected && c == u'^' && options.exponents) return {INPUT_OPEN_EXPONENT, {}, {}, {}};
  if (InsideSignS const inside = selected ? InsideSignS() : findByInsideSign(operators, place, c);
      inside.op) {
    return {INPUT_OPERATOR, inside.op->getName(), inside.target, {}};
  }
  bool const isCounted = c == u',' || c == u')';
  if (isCounted && !selected && options.constructs && findRecountedConstruct(view, c).op) {
    return {INPUT_RECOUNT, wstring(1, c), {}, {}};
  }
  if (PlaceS const value = selected || !options.leaving ? PlaceS() : leaveByValueSign(place, wstring(1, c))) {
    return {INPUT_MOVE, {}, value, {}};
  }
  if (auto const op = findBySign(operators, c); op && (selected || op->appliesAt(place))) {
    return decideSign(view, c, *op, options);
  }
  if (c >= 0x80 && findConstruct(operators, wstring(1, c)).op) return {INPUT_CALL, wstring(1, c), {}, {}};

  InputDecisionS decision{INPUT_TEXT, wstring(1, c), {}, {}};
  if (selected) return decision;
  LeavingS const leaving = leaveBySign(place, c, operators, options);
  if (leaving.complete) decision.kind = INPUT_MOVE;
  bool const isLetter = isWordCharacter(c) && !math::common::startsNumber(c) && c != u'_';
  decision.target = isLetter && options.exponents ? leaveOrder(place) : PlaceS();
  if (!decision.target) decision.target = leaving.target;
  if (c == u'/' && options.fractions) {
    PlaceS const end = leaving.target ? leaving.target : place;
    decision.begin = startOfDividend(end, operators);
  }
  return decision;
}

namespace {

/// Whether a name put before the place would become a part of the one that begins there.
bool meltsAt(PlaceS place, wstring const& name) {
  wstring const& text = place.node->crefText();
  if (place.pos == text.size() || !isWordCharacter(name.back()) || name.back() == math::common::pi_sign)
    return false;
  char16_t const next = text[place.pos];
  bool const isPart = next == u'_' || next == math::common::pi_sign || math::common::isDigit(next) ||
                      math::common::countPrimes(next) > 0;
  return isWordCharacter(next) && !isPart;
}

/// Whether the operator is written after an operand: "in", and not the variable of that name.
bool takesOperandBefore(OperatorBC const& op) {
  return op.getPlace() == OPERATOR_BETWEEN || op.getPlace() == OPERATOR_AFTER;
}

/// The same with a blank after it where it would become a part of the name there; `op` is what it inserts, if
/// anything.
ReplacementS apart(ReplacementS replacement, PointerTC<OperatorBC> const& op) {
  wstring const shown = op ? op->getText() : replacement.text;
  if (meltsAt(replacement.end, shown)) replacement.text = shown + u' ';
  return replacement;
}

/// Whether what is between two places of a text is all of an exponent.
bool isWholeExponent(PlaceS begin, PlaceS end) {
  Node4C const* const item = enclosingItem(*begin.node);
  return item && item->getType() == NODE4_POWER && begin == rowStart(*item->child(0)) && isAtRowEnd(end);
}

}  // namespace

ReplacementS findSignReplacement(ViewZNT4C const& view) {
  PlaceS const caret = view.getSelection().caret;
  wstring const& text = caret.node->crefText();
  SignRunS const run = findBySignRun(view.crefOperatorList(), text, caret.pos);
  PlaceS const begin{caret.node, caret.pos - run.length};
  bool const isFactorial = run.op && text[begin.pos] == u'!' && endsCounted(begin);
  if (run.op && !isFactorial) {
    PlaceS const value = leaveByValueSign(caret, run.op->getText() + run.op->crefWords().signs);
    return {begin, caret, value ? wstring() : run.op->getName(), {}, value};
  }
  if (beginsAnotherName(caret)) {
    PlaceS const name{caret.node, caret.pos - 1};
    return {name, caret, u' ' + text.substr(name.pos, 1), {}};
  }
  if (caret.pos == 0) return {};
  char16_t const letter = math::common::withoutCircumflex(text[caret.pos - 1]);
  PlaceS const before{caret.node, caret.pos - 1};
  if (letter == u'\0' || !endsOperandAt(before) || !view.crefOperatorList().lookup(u"^")) return {};
  return {before, caret, u"^", wstring(1, letter)};
}

ReplacementS findNameReplacement(OperatorListC const& operators, PlaceS end, InputOptionsS const& options,
                                 NameUseE use) {
  auto const [begin, name] = nameEndingAt(end);
  if (!(options.letters || options.singleLetters)) return {};
  // A raised "r" or "o" that is alone is the sign of an angle.
  if (options.letters && (name == u"r" || name == u"o") && isWholeExponent(begin, end))
    return {begin, end, u"(" + name + u")", {}};
  if (name.size() < 2) return {};
  auto const sign = options.letters && use == NAME_STANDS_ALONE ? findSignByName(operators, name) : nullptr;
  if (sign && takesOperandBefore(*sign) && endsOperandBefore(begin, operators)) {
    // The sign has the space around it that a word gets from blanks.
    PlaceS from = begin;
    while (from.pos > 0 && from.node->crefText()[from.pos - 1] == u' ') --from.pos;
    return {from, end, sign->getName(), {}};
  }
  if (sign && !takesOperandBefore(*sign)) return apart({begin, end, sign->getName(), {}}, sign);
  std::vector<wstring> factors{name};
  if (options.singleLetters && !isDifferentialBelow(begin, name))
    factors = findFactors(name, operators, options.names);
  std::size_t const called = use == NAME_IS_CALLED ? 1 : 0;
  for (std::size_t i = 0; options.letters && i < factors.size(); ++i) {
    if (i + called == factors.size()) {
      factors[i] = toCalledName(factors[i], operators);
      break;
    }
    factors[i] = toMeantName(factors[i]);
    auto const op = factors.size() > 1 ? operators.lookup(factors[i]) : nullptr;
    if (op) factors[i] = op->getText();
  }
  wstring text = factors[0];
  for (std::size_t i = 1; i < factors.size(); ++i) text += math::common::times_sign + factors[i];
  if (text == name) return {};
  auto const op = operators.lookup(text);
  return apart({begin, end, std::move(text), {}}, op);
}

ReplacementS findFunctionReplacement(ViewZNT4C const& view, PlaceS end) {
  auto const [begin, name] = nameEndingAt(end);
  if (name.size() < 2 || view.crefOperatorList().lookupText(name)) return {};
  auto const read = exchange::fromPlainText(name + u"(x)", math::algexpr::CASSessionBC::getSession());
  auto const op = read ? view.crefOperatorList().lookup(read->getNode()->getName()) : nullptr;
  if (!op || op->isConstruct() || op->isLinear() || op->getArity() != 1) return {};
  return {begin, end, op->getText(), {}};
}

ReplacementS findFactorReplacement(ViewZNT4C const& view) {
  PlaceS const caret = view.getSelection().caret;
  Node4C const* const open = caret.pos == 0 ? caret.node->goLeft() : nullptr;
  if (!open || open->getType() != NODE4_OPEN) return {};
  PlaceS const end = placeBefore(*open);
  wstring const& text = end.node->crefText();
  PlaceS begin = end;
  while (begin.pos > 0 && text[begin.pos - 1] == u' ') --begin.pos;
  if (begin == end || !endsNameAt(begin)) return {};
  unsigned int const start = wordStart(text, begin.pos);
  auto const word = view.crefOperatorList().lookupText(text.substr(start, begin.pos - start));
  bool const takesOperand = word && (word->isLinear() || word->getArity() > 0);
  return takesOperand ? ReplacementS() : ReplacementS{begin, end, u"*", {}};
}

}  // namespace zolt::field
