// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "zolt/engines/giac/worker/evaluator.h"

// Constructs with a variable, tables and sets.
namespace zolt::giac_worker {

using namespace giac;
using namespace math::algexpr;

// ---- Constructs with a variable
// ------------------------------------------------------------------------------

// Few terms are computed one by one: what divides by zero in one of them shows there, and an empty sum is 0.
gen EvaluatorC::evaluateSeries(PlaceS place) {
  constexpr int most_terms = 1000;
  bool const isSum = nodeOf(place).crefName() == u"sum";
  if (countChildren(place) != 4) return evaluateCall(place, nodeOf(place).crefName());
  wstring const& variable = variableAt(place, 0);
  gen const from = evaluateNumberAt(place, 1), to = evaluateNumberAt(place, 2);
  PlaceS const body = child(place, 3);
  for (unsigned i = 1; i < 3; ++i) {
    gen const& bound = i == 1 ? from : to;
    if (isReal(bound) && !bound.is_integer()) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, i));
  }
  gen const neutral = isSum ? 0 : 1;
  gen const count = to - from + gen(1);
  if (count.is_integer() && !is_positive(count, context_)) return neutral;
  if (count.type == _INT_ && count.val <= most_terms) {
    vecteur terms;
    for (int i = 0; i < count.val; ++i) {
      terms.push_back(evaluateWith(body, variable, from + gen(i)));
      if (isTruthValued(terms.back())) fail(CAS_CAUSE_WRONG_ARGUMENT, body);
      if (terms.back().type == _VECT) fail(CAS_CAUSE_NEEDS_ALGEBRA, body);
    }
    if (terms.empty()) return neutral;
    gen const all(terms, _SEQ__VECT);
    return checked(isSum ? _plus(all, context_) : _prod(all, context_), place, false);
  }
  gen const bound = names_.makeBound(variable);
  gen const term = evaluateWith(body, variable, bound);
  gen const operands(makevecteur(term, bound, from, to), _SEQ__VECT);
  unary_function_ptr const* const function = isSum ? at_sum : at_product;
  gen const result = isSum ? _sum(operands, context_) : _product(operands, context_);
  return openAt(checked(result, place, is_inf(from) || is_inf(to)), function, place);
}

// An antiderivative alone does not see the poles between the bounds.
void EvaluatorC::checkPoles(gen const& body, gen const& variable, gen const& lower, gen const& upper,
                            PlaceS place) {
  vecteur const poles = protect_find_singularities(body, *variable._IDNTptr, 0, context_);
  for (gen const& pole : poles) {
    bool const isInside = isConstant(pole) && findSign(pole - lower) * findSign(pole - upper) == -1;
    if (!isInside) continue;
    gen const whole = _integrate(gen(makevecteur(body, variable), _SEQ__VECT), context_);
    if (hasFunction(whole, at_integrate)) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
    for (int const side : {-1, 1}) {
      gen const limit = _limit(gen(makevecteur(whole, variable, pole, side), _SEQ__VECT), context_);
      if (is_inf(limit) || is_undef(limit)) fail(CAS_CAUSE_UNDEFINED, place);
    }
  }
}

gen EvaluatorC::evaluateIntegral(PlaceS place) {
  if (countChildren(place) != 4) return evaluateCall(place, u"integral");
  gen const lower = evaluateNumberAt(place, 0), upper = evaluateNumberAt(place, 1);
  wstring const& variable = variableAt(place, 3);
  gen const bound = names_.makeBound(variable);
  gen const body = evaluateWith(child(place, 2), variable, bound);
  bool const fits = !isTruthValued(body) && body.type != _VECT;
  if (!fits) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, 2));
  if (lower == upper) return 0;
  if (isConstant(lower) && isConstant(upper)) checkPoles(body, bound, lower, upper, place);
  gen const result = _integrate(gen(makevecteur(body, bound, lower, upper), _SEQ__VECT), context_);
  return openAt(checked(result, place, true), at_integrate, place);
}

gen EvaluatorC::evaluateAntiderivative(PlaceS place) {
  if (countChildren(place) != 2) return evaluateCall(place, u"antiderivative");
  wstring const& variable = variableAt(place, 1);
  gen const bound = names_.makeBound(variable);
  gen const body = evaluateWith(child(place, 0), variable, bound);
  if (isTruthValued(body) || body.type == _VECT) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, 0));
  gen const whole = _integrate(gen(makevecteur(body, bound), _SEQ__VECT), context_);
  openAt(checked(whole, place, false), at_integrate, place);
  return eval(subst(whole, bound, outerValue(place, 1), false, context_), 1, context_);
}

gen EvaluatorC::evaluateDerivative(PlaceS place) {
  constexpr int most_orders = 1000;
  wstring const& name = nodeOf(place).crefName();
  bool const hasOrder = name == u"diffn" || name == u"pdiffn";
  if (countChildren(place) != (hasOrder ? 3U : 2U)) return evaluateCall(place, name);
  wstring const& variable = variableAt(place, 1);
  gen const order = hasOrder ? evaluateNumberAt(place, 2) : gen(1);
  bool const isOrder = order.type == _INT_ && order.val >= 0 && order.val <= most_orders;
  if (!isOrder) fail(CAS_CAUSE_NEEDS_ALGEBRA, child(place, 2));
  gen const bound = names_.makeBound(variable);
  gen const body = evaluateWith(child(place, 0), variable, bound);
  if (isTruthValued(body) || isSet(body)) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, 0));
  gen const derivative = order.val == 0 ? body : derived(body, bound, order, context_);
  gen const outside = outerValue(place, 1);
  // What is left to be derived is so by a variable.
  bool const isOpen = hasFunction(derivative, at_derive) && outside.type != _IDNT;
  if (isOpen) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  return checked(eval(subst(derivative, bound, outside, false, context_), 1, context_), place, false);
}

gen EvaluatorC::evaluateLimit(PlaceS place) {
  unsigned long const count = countChildren(place);
  if (count != 3 && count != 4) return evaluateCall(place, u"limit");
  wstring const& variable = variableAt(place, 1);
  gen const to = evaluateNumberAt(place, 2);
  gen const side = count == 4 ? evaluateNumberAt(place, 3) : gen(0);
  bool const isSide = side.type == _INT_ && side.val >= -1 && side.val <= 1;
  if (!isSide) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, 3));
  gen const bound = names_.makeBound(variable);
  gen const body = evaluateWith(child(place, 0), variable, bound);
  if (isTruthValued(body) || body.type == _VECT) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, 0));
  gen const result = _limit(gen(makevecteur(body, bound, to, side), _SEQ__VECT), context_);
  return openAt(checked(result, place, true), at_limit, place);
}

gen EvaluatorC::evaluateWhere(PlaceS place) {
  if (countChildren(place) != 3) return evaluateCall(place, u"where");
  wstring const& variable = variableAt(place, 1);
  gen const value = evaluate(child(place, 2));
  return evaluateWith(child(place, 0), variable, value);
}

gen EvaluatorC::evaluateCases(PlaceS place) {
  for (unsigned i = 0; i < countChildren(place); ++i) {
    PlaceS const row = child(place, i);
    bool const isRow = nodeOf(row).crefName() == u"list" && countChildren(row) == 2;
    if (!isRow) fail(CAS_CAUSE_WRONG_ARGUMENT, row);
    gen const condition = evaluate(child(row, 1));
    if (isTruth(condition, true)) return evaluate(child(row, 0));
    if (!isTruth(condition, false)) {
      fail(isTruthValued(condition) ? CAS_CAUSE_NEEDS_ALGEBRA : CAS_CAUSE_WRONG_ARGUMENT, child(row, 1));
    }
  }
  fail(CAS_CAUSE_UNDEFINED, place);
}

// ---- Tables
// --------------------------------------------------------------------------------------------------

gen EvaluatorC::evaluateTable(PlaceS place) {
  bool const isMatrixItself = nodeOf(place).crefName() == u"matrix";
  bool const hasRows = nodeOf(child(place, 0)).crefName() == u"list";
  gen table;
  if (hasRows) {
    vecteur rows;
    for (unsigned i = 0; i < countChildren(place); ++i) {
      PlaceS const row = child(place, i);
      vecteur const cells = evaluateChildren(row);
      bool const fits =
          nodeOf(row).crefName() == u"list" && !cells.empty() &&
          (rows.empty() || rows[0]._VECTptr->size() == cells.size()) &&
          std::none_of(cells.begin(), cells.end(), [](gen const& cell) { return cell.type == _VECT; });
      if (!fits) fail(CAS_CAUSE_WRONG_ARGUMENT, row);
      rows.push_back(cells);
    }
    table = gen(rows, _MATRIX__VECT);
  } else if (!isMatrixItself && countChildren(place) == 1) {
    table = evaluate(child(place, 0));
  }
  if (!isMatrix(table)) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  if (isMatrixItself) return table;
  if (!is_squarematrix(table)) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  return mdet(*table._VECTptr, context_);
}

gen EvaluatorC::evaluateNorm(PlaceS place) {
  if (countChildren(place) != 1) return evaluateCall(place, u"norm");
  gen const value = evaluateNumberAt(place, 0);
  if (value.type != _VECT) return abs(value, context_);
  bool const isRow = isMatrix(value) && value._VECTptr->size() == 1;
  bool const isColumn = isMatrix(value) && value._VECTptr->front()._VECTptr->size() == 1;
  if (!isRow && !isColumn) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  gen squares = 0;
  for (gen const& row : *value._VECTptr) {
    for (gen const& cell : *row._VECTptr) squares = squares + pow(abs(cell, context_), gen(2), context_);
  }
  return sqrt(squares, context_);
}

// ---- Sets
// ----------------------------------------------------------------------------------------------------

bool EvaluatorC::areEqual(gen const& a, gen const& b, PlaceS place) const {
  if (isSet(a) && isSet(b)) return hasAll(a, b, place) && hasAll(b, a, place);
  if (a == b) return true;
  if (isMatrix(a) && isMatrix(b)) {
    if (!haveSameSize(a, b)) return false;
    vecteur cells;
    aplatir(*(a - b)._VECTptr, cells);
    return std::all_of(cells.begin(), cells.end(), [&](gen const& cell) { return areEqual(cell, 0, place); });
  }
  if (a.type == _VECT || b.type == _VECT) return false;
  int sign = findSign(a - b);
  if (sign == 2 && isConstant(a - b)) sign = findSign(abs(a - b, context_));
  if (sign == 2) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  return sign == 0;
}

bool EvaluatorC::hasElement(gen const& set, gen const& element, PlaceS place) const {
  vecteur const& all = *set._VECTptr;
  if (std::find(all.begin(), all.end(), element) != all.end()) return true;
  return std::any_of(all.begin(), all.end(), [&](gen const& one) { return areEqual(one, element, place); });
}

bool EvaluatorC::hasAll(gen const& set, gen const& elements, PlaceS place) const {
  vecteur const& all = *elements._VECTptr;
  return std::all_of(all.begin(), all.end(), [&](gen const& one) { return hasElement(set, one, place); });
}

gen EvaluatorC::evaluateSet(PlaceS place) {
  vecteur elements;
  for (gen const& value : evaluateChildren(place)) {
    bool const isKnown = std::any_of(elements.begin(), elements.end(), [&](gen const& one) {
      // Names that may be equal stay.
      bool const isDecided = isConstant(one) && isConstant(value);
      return one == value || (isDecided && areEqual(one, value, place));
    });
    if (!isKnown) elements.push_back(value);
  }
  return gen(elements, _SET__VECT);
}

gen EvaluatorC::evaluateSetOperation(PlaceS place) {
  wstring const& name = nodeOf(place).crefName();
  vecteur const values = evaluateChildren(place);
  if (values.size() != 2) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  if (!isSet(values[0]) || !isSet(values[1])) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  vecteur elements;
  if (name == u"union") elements = *values[0]._VECTptr;
  bool const takesCommon = name == u"intersect";
  for (gen const& one : *values[name == u"union" ? 1 : 0]._VECTptr) {
    gen const& other = values[name == u"union" ? 0 : 1];
    if (hasElement(other, one, place) == takesCommon) elements.push_back(one);
  }
  return gen(elements, _SET__VECT);
}

gen EvaluatorC::evaluateMembership(PlaceS place) {
  wstring const& name = nodeOf(place).crefName();
  if (countChildren(place) != 2) return evaluateCall(place, name);
  gen const element = evaluateNumberAt(place, 0);
  if (name == u"subset" || name == u"subseteq") {
    gen const set = evaluateNumberAt(place, 1);
    if (!isSet(element) || !isSet(set)) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
    bool const isInside = hasAll(set, element, place);
    return makeTruth(isInside && (name == u"subseteq" || !hasAll(element, set, place)));
  }
  bool const isWanted = name == u"in";
  PlaceS const right = child(place, 1);
  wstring const& setName = nodeOf(right).crefName();
  if (countChildren(right) == 4 && setName == u"interval") {
    int const fromLower = findSign(element - evaluateNumberAt(right, 0));
    int const fromUpper = findSign(element - evaluateNumberAt(right, 1));
    auto const isClosed = [&](unsigned index) { return nodeOf(child(right, index)).crefName() == u"1"; };
    bool const isOutside = fromLower == -1 || fromUpper == 1 || (fromLower == 0 && !isClosed(2)) ||
                           (fromUpper == 0 && !isClosed(3));
    if (!isOutside && (fromLower == 2 || fromUpper == 2)) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
    return makeTruth(isOutside != isWanted);
  }
  if (setName.size() == 1 && std::u16string_view(u"ℕℤℚℝ").find(setName[0]) != wstring::npos) {
    if (!isExactReal(element)) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
    bool const isWhole = element.is_integer();
    bool const isNatural = isWhole && findSign(element) != -1;
    bool const isInside = setName == u"ℕ" ? isNatural : setName == u"ℤ" ? isWhole : true;
    return makeTruth(isInside == isWanted);
  }
  gen const set = evaluateNumberAt(place, 1);
  if (!isSet(set)) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  return makeTruth(hasElement(set, element, place) == isWanted);
}

}  // namespace zolt::giac_worker
