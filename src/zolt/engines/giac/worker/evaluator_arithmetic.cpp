// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "zolt/engines/giac/worker/evaluator.h"

// Sums, products, powers, roots, and what is true.
namespace zolt::giac_worker {

using namespace giac;
using namespace math::algexpr;

namespace {

constexpr int most_bits = 4000000;

// Of the larger part of a fraction; 1 for 1, −1 and 0.
int countBits(gen const& number) {
  if (number.type == _FRAC) return std::max(countBits(number._FRACptr->num), countBits(number._FRACptr->den));
  return number.is_integer() && !is_zero(number) ? sizeinbase2(number) : 1;
}

}  // namespace

// A chain of signs is nested to the left; it is read from its end.
gen EvaluatorC::evaluateSum(PlaceS place) {
  struct TermS {
    PlaceS place;
    bool isNegative;
  };
  std::vector<TermS> terms;
  PlaceS at = place;
  for (;;) {
    wstring const& name = nodeOf(at).crefName();
    bool const isChain = countChildren(at) == 2 && (name == u"+" || name == u"-");
    if (!isChain) break;
    terms.push_back({child(at, 1), name == u"-"});
    at = child(at, 0);
  }
  if (at.at == place.at) return evaluateCall(place, nodeOf(place).crefName());
  terms.push_back({at, false});
  vecteur values;
  bool isInfinite = false, isTable = false;
  for (auto term = terms.rbegin(); term != terms.rend(); ++term) {
    gen const value = evaluate(term->place);
    if (isTruthValued(value) || isSet(value)) fail(CAS_CAUSE_WRONG_ARGUMENT, term->place);
    bool const fits = values.empty() || isTable == isMatrix(value);
    isTable = isMatrix(value);
    bool const hasSize = values.empty() || !isTable || haveSameSize(values[0], value);
    if (!fits || !hasSize) fail(CAS_CAUSE_WRONG_ARGUMENT, term->place);
    isInfinite |= is_inf(value);
    values.push_back(term->isNegative ? -value : value);
  }
  if (!isTable) return checked(_plus(gen(values, _SEQ__VECT), context_), place, isInfinite);
  gen total = values[0];
  for (std::size_t i = 1; i < values.size(); ++i) total = total + values[i];
  return total;
}

gen EvaluatorC::multiply(gen const& a, gen const& b, PlaceS place) {
  if (isMatrix(a) && isMatrix(b)) {
    if (a._VECTptr->front()._VECTptr->size() != b._VECTptr->size()) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    return gen(mmult(*a._VECTptr, *b._VECTptr), _MATRIX__VECT);
  }
  if (isSet(a) || isSet(b)) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  return checked(operator_times(a, b, context_), place, is_inf(a) || is_inf(b));
}

gen EvaluatorC::evaluateProduct(PlaceS place) {
  std::vector<PlaceS> factors;
  PlaceS at = place;
  for (; countChildren(at) == 2 && nodeOf(at).crefName() == u"*"; at = child(at, 0)) {
    factors.push_back(child(at, 1));
  }
  if (at.at == place.at) return evaluateCall(place, u"*");
  factors.push_back(at);
  gen product = 1;
  for (auto factor = factors.rbegin(); factor != factors.rend(); ++factor) {
    gen const value = evaluate(*factor);
    if (isTruthValued(value)) fail(CAS_CAUSE_WRONG_ARGUMENT, *factor);
    product = factor == factors.rbegin() ? value : multiply(product, value, place);
  }
  return product;
}

gen EvaluatorC::evaluateQuotient(PlaceS place) {
  if (countChildren(place) != 2) return evaluateCall(place, u"/");
  gen const above = evaluateNumberAt(place, 0), below = evaluateNumberAt(place, 1);
  if (below.type == _VECT || isSet(above)) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  if (findSign(below) == 0) fail(CAS_CAUSE_DIVISION_BY_ZERO, place);
  return checked(rdiv(above, below, context_), place, is_inf(above) || is_inf(below));
}

gen EvaluatorC::evaluatePower(PlaceS place) {
  constexpr int most_table_power = 10000;
  if (countChildren(place) != 2) return evaluateCall(place, u"^");
  gen const base = evaluateNumberAt(place, 0), exponent = evaluateNumberAt(place, 1);
  if (isSet(base) || exponent.type == _VECT) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  if (isMatrix(base)) {
    bool const isPower =
        exponent.type == _INT_ && is_squarematrix(base) && abs(exponent.val) <= most_table_power;
    if (!isPower) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    bool const isSingular = exponent.val < 0 && findSign(mdet(*base._VECTptr, context_)) == 0;
    if (isSingular) fail(CAS_CAUSE_DIVISION_BY_ZERO, place);
    return pow(base, exponent, context_);
  }
  if (findSign(base) == 0) {
    int const sign = findSign(exponent);
    if (sign == 0) fail(CAS_CAUSE_UNDEFINED, place);
    if (sign == -1) fail(CAS_CAUSE_DIVISION_BY_ZERO, place);
  }
  if (isExactReal(base) && exponent.is_integer()) {
    gen const size = abs(exponent, context_) * gen(countBits(base));
    if (countBits(base) > 1 && is_greater(size, gen(most_bits), context_)) fail(CAS_CAUSE_TOO_LARGE, place);
  }
  return checked(pow(base, exponent, context_), place, is_inf(base) || is_inf(exponent));
}

gen EvaluatorC::evaluateNegative(PlaceS place) {
  gen const value = evaluateNumberAt(place, 0);
  if (isSet(value)) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  return -value;
}

gen EvaluatorC::evaluateSame(PlaceS place) { return evaluate(child(place, 0)); }

gen EvaluatorC::evaluateSqrt(PlaceS place) {
  gen const value = evaluateNumberAt(place, 0);
  if (value.type == _VECT) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  return checked(sqrt(value, context_), place, is_inf(value));
}

// The real root of a negative number when the degree is odd, not the first of the complex ones.
gen EvaluatorC::evaluateRoot(PlaceS place) {
  gen const value = evaluateNumberAt(place, 0), degree = evaluateNumberAt(place, 1);
  bool const fits = value.type != _VECT && (degree.type == _INT_ || !isExactReal(degree));
  if (!fits || findSign(degree) == 0) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, 1));
  bool const isOdd = degree.type == _INT_ && degree.val % 2 != 0;
  gen const inverse = rdiv(1, degree, context_);
  int const sign = isOdd ? findSign(value) : 1;
  if (isOdd && sign == -1) return -pow(-value, inverse, context_);
  if (isOdd && sign == 2) return _surd(gen(makevecteur(value, degree), _SEQ__VECT), context_);
  return checked(pow(value, inverse, context_), place, is_inf(value));
}

gen EvaluatorC::evaluateLog(PlaceS place) {
  if (countChildren(place) != 2) return evaluateCall(place, u"log");
  vecteur const values = evaluateChildren(place);
  for (unsigned i = 0; i < 2; ++i) {
    bool const isLog = values[i].type != _VECT && findSign(values[i]) != 0;
    if (!isLog) fail(values[i].type == _VECT ? CAS_CAUSE_WRONG_ARGUMENT : CAS_CAUSE_UNDEFINED, place);
  }
  if (findSign(values[1] - gen(1)) == 0) fail(CAS_CAUSE_DIVISION_BY_ZERO, place);
  return checked(_logb(gen(values, _SEQ__VECT), context_), place, is_inf(values[0]));
}

gen EvaluatorC::evaluateDivMod(PlaceS place) {
  bool const isMod = nodeOf(place).crefName() == u"mod";
  vecteur const values = evaluateChildren(place);
  if (values.size() != 2 || values[0].type == _VECT || values[1].type == _VECT) {
    fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  }
  if (findSign(values[1]) == 0) fail(CAS_CAUSE_DIVISION_BY_ZERO, place);
  gen const operands(makevecteur(values[0], values[1]), _SEQ__VECT);
  return checked((isMod ? mod_function : div_function)(operands, context_), place, false);
}

gen EvaluatorC::evaluateFactorial(PlaceS place) {
  gen const value = evaluateNumberAt(place, 0);
  if (value.type == _VECT) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  if (isExactReal(value)) {
    bool const isWhole = value.is_integer() && is_positive(value, context_);
    if (!isWhole && !is_zero(value, context_)) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    if (value.type != _INT_) fail(CAS_CAUSE_TOO_LARGE, place);
  }
  return checked(_factorial(value, context_), place, is_inf(value));
}

gen EvaluatorC::evaluatePercent(PlaceS place) {
  int const whole = nodeOf(place).crefName() == u"percent" ? 100 : 1000;
  return rdiv(evaluateNumberAt(place, 0), whole, context_);
}

gen EvaluatorC::evaluateAngle(PlaceS place) {
  gen const value = evaluateNumberAt(place, 0);
  bool const isInDegrees = nodeOf(place).crefName() == u"_deg";
  if (isInDegrees == (angle_ == CAS_DEGREES)) return value;
  return isInDegrees ? value * cst_pi / gen(180) : value * gen(180) / cst_pi;
}

// ---- Truth
// ---------------------------------------------------------------------------------------------------

gen EvaluatorC::evaluateRelation(PlaceS place) {
  struct RelationS {
    char16_t const* name;
    unary_function_ptr const* function;
    bool less, equal, greater;
  };
  static RelationS const relations[] = {{u"=", at_equal, false, true, false},
                                        {u"<>", at_different, true, false, true},
                                        {u"<", at_inferieur_strict, true, false, false},
                                        {u"<=", at_inferieur_egal, true, true, false},
                                        {u">", at_superieur_strict, false, false, true},
                                        {u">=", at_superieur_egal, false, true, true}};
  vecteur const values = evaluateChildren(place);
  if (values.size() != 2) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  wstring const& name = nodeOf(place).crefName();
  RelationS const& relation = *std::find_if(std::begin(relations), std::end(relations),
                                            [&](RelationS const& one) { return name == one.name; });
  bool const isOfTables = values[0].type == _VECT || values[1].type == _VECT;
  if (isOfTables) {
    if (relation.less != relation.greater) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    bool const isSame = areEqual(values[0], values[1], place);
    return makeTruth(isSame == relation.equal);
  }
  int sign = values[0] == values[1] ? 0 : 2;
  if (sign == 2) sign = is_inf(values[0]) ? findSign(values[0]) : findSign(values[0] - values[1]);
  if (sign == 0) return makeTruth(relation.equal);
  if (sign == 1) return makeTruth(relation.greater);
  if (sign == -1) return makeTruth(relation.less);
  // Complex numbers are equal or not, and nothing else.
  gen const distance = abs(values[0] - values[1], context_);
  bool const isOther = relation.less == relation.greater && isConstant(distance) && findSign(distance) == 1;
  if (isOther) return makeTruth(relation.greater);
  return symbolic(relation.function, gen(makevecteur(values[0], values[1]), _SEQ__VECT));
}

gen EvaluatorC::evaluateLogic(PlaceS place) {
  wstring const& name = nodeOf(place).crefName();
  std::vector<gen> values;
  for (unsigned i = 0; i < countChildren(place); ++i) {
    values.push_back(evaluate(child(place, i)));
    bool const isName = values.back().type == _IDNT;
    if (!isTruthValued(values.back()) && !isName) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, i));
  }
  auto const combine = [](unary_function_ptr const* function, gen const& a, gen const& b) -> gen {
    bool const decides = function == at_ou;  // the value that decides alone
    if (isTruth(a, decides) || isTruth(b, decides)) return makeTruth(decides);
    if (isTruth(a, !decides)) return b;
    if (isTruth(b, !decides) || a == b) return a;
    return symbolic(function, gen(makevecteur(a, b), _SEQ__VECT));
  };
  auto const negate = [](gen const& a) -> gen {
    if (isTruth(a, true) || isTruth(a, false)) return makeTruth(isTruth(a, false));
    return symbolic(at_not, a);
  };
  if (name == u"not") return negate(values[0]);
  if (name == u"implies" && values.size() == 2) return combine(at_ou, negate(values[0]), values[1]);
  if (name == u"iff" && values.size() == 2) {
    return combine(at_and, combine(at_ou, negate(values[0]), values[1]),
                   combine(at_ou, negate(values[1]), values[0]));
  }
  gen result = values[0];
  for (std::size_t i = 1; i < values.size(); ++i) {
    result = combine(name == u"and" ? at_and : at_ou, result, values[i]);
  }
  return result;
}

}  // namespace zolt::giac_worker
