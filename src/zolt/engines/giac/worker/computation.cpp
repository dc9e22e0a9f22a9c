// SPDX-License-Identifier: GPL-3.0-or-later
#include "zolt/engines/giac/worker/computation.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/engines/giac/worker/certain_digits.h"
#include "zolt/engines/giac/worker/simple_form.h"

namespace zolt::giac_worker {

using namespace giac;
using namespace math::algexpr;
using engine_giac::detail::AnswerS;

ComputationC::ComputationC(engine_giac::detail::QuestionS const& question)
    : question_(question), evaluator_(question.definitions, question.angle, names_, &context_) {
  logptr(nullptr, &context_);
  withsqrt(false, &context_);
  complex_mode(false, &context_);
}

AnswerS ComputationC::run() {
  AnswerS answer;
  try {
    return compute();
  } catch (FaultS const& fault) {
    answer.cause = fault.cause;
    answer.part = fault.part;
    answer.subject = fault.subject;
  } catch (std::bad_alloc const&) {
    answer.cause = CAS_CAUSE_TOO_LARGE;
    answer.part = 0;
  } catch (std::exception const&) {
    answer.cause = CAS_CAUSE_NEEDS_ALGEBRA;
    answer.part = 0;
  }
  return answer;
}

gen ComputationC::evaluate() { return evaluator_.evaluate(tree_, question_.variable); }

AnswerS ComputationC::compute() {
  oss::PointerTC<NodeABC> node = question_.expression;
  ParentNodeABC const* const parent = node->asParent();
  bool const isEquation = parent && node->crefName() == u"=" && parent->numChildren() == 2;
  // The difference has the same parts with the same numbers.
  if (question_.operation == CAS_SOLVE && isEquation) {
    node = makeFunction(u"-", {parent->childPointer(0), parent->childPointer(1)});
  }
  if (!tree_.fill(*node)) throw FaultS{CAS_CAUSE_TOO_LARGE, 0, {}};
  if (question_.operation == CAS_SOLVE) return solve();
  gen const value = evaluate();
  unsigned long const open = evaluator_.getOpenPart();
  if (open != CASResultS::no_part) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, open, {}};
  gen const variable = question_.variable.empty() ? gen(0) : names_.find(question_.variable);
  switch (question_.operation) {
    case CAS_APPROXIMATE:
      return approximateAll(value);
    case CAS_SIMPLIFY:
      return finish(forParts(value, [this](gen const& one) {
        bool const isHyperbolic = hasFunction(one, at_cosh) || hasFunction(one, at_sinh);
        gen const simple = hasFunction(one, at_surd) ? one : giac::simplify(one, &context_);
        gen const powers =
            isHyperbolic && !hasLongPower(one) ? normal(_hyp2exp(one, &context_), &context_) : simple;
        gen const& best = measureForm(powers) < measureForm(simple) ? powers : simple;
        return shorten(measureForm(best) < measureForm(one) ? best : one);
      }));
    case CAS_EXPAND:
      return finish(
          forParts(value, [this](gen const& one) { return collected(expand(one, &context_), &context_); }));
    case CAS_FACTOR:
      return finish(forParts(value, [this](gen const& one) { return factorize(one); }));
    case CAS_DIFFERENTIATE:
      if (isTruthValued(value) || isSet(value)) throw FaultS{CAS_CAUSE_WRONG_ARGUMENT, 0, {}};
      return finish(shorten(derived(value, variable, 1, &context_)));
    case CAS_INTEGRATE: {
      if (isTruthValued(value) || value.type == _VECT) throw FaultS{CAS_CAUSE_WRONG_ARGUMENT, 0, {}};
      gen const whole = _integrate(gen(makevecteur(value, variable), _SEQ__VECT), &context_);
      if (hasFunction(whole, at_integrate)) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
      return finish(shorten(whole));
    }
    default:
      return finish(forParts(value, [this](gen const& one) { return shorten(one); }));
  }
}

gen ComputationC::forParts(gen const& value, ActT const& act) const {
  bool const isLogical = isTruthValued(value) && value.type == _SYMB;
  if (isLogical) {
    gen const& sides = value._SYMBptr->feuille;
    return symbolic(value._SYMBptr->sommet, forParts(sides, act));
  }
  if (value.type == _VECT) {
    vecteur parts;
    for (gen const& one : *value._VECTptr) parts.push_back(forParts(one, act));
    return gen(parts, value.subtype);
  }
  return value.type == _IDNT ? value : act(value);
}

// Cancelling and collecting may make a value shorter or longer: the shortest is what people expect. Terms are
// brought over one denominator only where that gains much.
gen ComputationC::shorten(gen const& whole) {
  if (hasFunction(whole, at_surd)) {
    // To the algebra system an odd root of what may be negative is a power, which is another number.
    vecteur roots, names;
    gen const covered = replaced(whole, at_surd, [&](gen const& root) {
      roots.push_back(root);
      names.push_back(names_.makeBound(u"root"));
      return names.back();
    });
    return eval(subst(shorten(covered), names, roots, false, &context_), 1, &context_);
  }
  gen value = whole;
  constexpr int most_simplified = 60, most_constant = 400;
  constexpr std::size_t most_joined = 8;
  bool hasOneBelow = false;
  bool const isSum =
      whole.type == _SYMB && whole._SYMBptr->sommet == at_plus && whole._SYMBptr->feuille.type == _VECT;
  if (isSum && hasFunction(whole, at_inv)) {
    vecteur terms;
    for (gen const& term : *whole._SYMBptr->feuille._VECTptr) terms.push_back(shorten(term));
    value = _plus(gen(terms, _SEQ__VECT), &context_);
    DenominatorCountS const count = countDenominators(terms, &context_);
    if (count.denominators > most_joined) return value;
    hasOneBelow = count.denominators == 1 && count.quotients > 1;
  }
  if (value.type != _SYMB && value.type != _FRAC) return value;
  if (isExactReal(value)) return value;
  if (value.type == _FRAC && value._FRACptr->den.type == _CPLX) {
    gen const below = conj(value._FRACptr->den, &context_);
    return rdiv(value._FRACptr->num * below, value._FRACptr->den * below, &context_);
  }
  int const size = measureForm(value);
  gen best = value;
  int least = size;
  auto const consider = [&](gen const& other) {
    int const length = measureForm(other);
    bool const isQuotient = isSum && !hasOneBelow && hasFunction(other, at_inv);
    if (is_undef(other) || length >= least || (isQuotient && length * 4 > size * 3)) return;
    best = other;
    least = length;
  };
  if (!hasLongPower(value)) consider(normal(value, &context_));
  bool const isSmall = size < (evaluator_.isConstant(value) ? most_constant : most_simplified);
  if (isSmall && !hasLongPower(value)) consider(giac::simplify(value, &context_));
  if (isSmall && hasFunction(best, at_inv)) consider(withPowersBelow(best, &context_));
  bool const hasLogarithms = hasFunction(best, at_ln) && hasFunction(best, at_plus);
  if (isSmall && hasLogarithms && evaluator_.isConstant(best)) consider(withOneLogarithm(best, &context_));
  return best;
}

gen ComputationC::factorize(gen const& value) const {
  if (value.is_integer()) return _ifactor(value, &context_);
  if (isExactReal(value)) {
    return symbolic(at_prod, gen(makevecteur(_ifactor(value._FRACptr->num, &context_),
                                             symbolic(at_inv, _ifactor(value._FRACptr->den, &context_))),
                                 _SEQ__VECT));
  }
  return factor(value, false, &context_);
}

ResultWriterC ComputationC::makeWriter() const {
  return {names_, question_.angle,
          evaluator_.hasDecimals() ? ResultWriterC::FRACTIONS_AS_DECIMALS
                                   : ResultWriterC::FRACTIONS_AS_QUOTIENTS};
}

// Angles that are results are in radians.
gen ComputationC::inDegrees(gen const& value) {
  bool hasAngle = false;
  gen result = value;
  for (unary_function_ptr const* const function : {at_asin, at_acos, at_atan, at_arg}) {
    result = replaced(result, function, [&](gen const& angle) -> gen {
      hasAngle = true;
      gen const inside(makevecteur(names_.find(findName(*function)), angle._SYMBptr->feuille), _SEQ__VECT);
      return symbolic(at_of, inside) * cst_pi / gen(180);
    });
  }
  return hasAngle ? forParts(result, [this](gen const& one) { return normal(one, &context_); }) : value;
}

AnswerS ComputationC::finish(gen const& found) {
  gen const value = question_.angle == CAS_DEGREES ? inDegrees(found) : found;
  if (is_undef(value)) throw FaultS{CAS_CAUSE_UNDEFINED, 0, {}};
  AnswerS answer;
  answer.value = makeWriter().write(value);
  if (!answer.value) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
  answer.cause = CAS_CAUSE_NONE;
  return answer;
}

// ---- Rounded values
// ----------------------------------------------------------------------------------------

// A number is rounded twice, with more and more digits: those that agree are certain.
ResultWriterC::NodeP ComputationC::approximateNode(gen const& value, unsigned& certain) {
  constexpr int guard = 8, attempts = 4;
  constexpr unsigned certain_double = 9;
  if (isTruthValued(value) && value.type != _SYMB) return makeWriter().write(value);
  if (value == plus_inf || value == minus_inf) return makeWriter().write(value);
  bool const isStructure = value.type == _VECT || isTruthValued(value);
  if (isStructure) {
    wstring const name = isSet(value) ? u"set" : isTruthValued(value) ? u"" : u"list";
    if (name.empty()) throw FaultS{CAS_CAUSE_NOT_CERTAIN, 0, {}};
    bool const isTable = isMatrix(value);
    std::vector<ResultWriterC::NodeP> parts;
    for (gen const& one : *value._VECTptr) parts.push_back(approximateNode(one, certain));
    return parts.empty() ? makeNamed(u"∅") : makeFunction(isTable ? u"matrix" : name, std::move(parts));
  }
  unsigned const asked = question_.digits;
  wstring text;
  if (isExactReal(value) && isDecimal(value, asked, text)) return makeNumber(text);
  bool const isExactFunction = hasAllDigits(value);
  int digits = static_cast<int>(std::max(asked, 15U)) + guard;
  gen rounded;
  int common = 0;
  for (int attempt = 0; attempt < attempts && common <= static_cast<int>(asked); ++attempt, digits *= 2) {
    gen const less = approximate(value, digits, &context_);
    rounded = approximate(value, digits + digits / 2, &context_);
    bool const isNumber =
        rounded.type == _REAL || rounded.type == _DOUBLE_ || rounded.type == _CPLX || isExactReal(rounded);
    if (!isNumber) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
    // What rounding has left over is no imaginary part.
    bool const isReal =
        rounded.type == _CPLX && countCommonDigits(re(rounded, &context_), rounded, &context_) >= digits;
    if (isReal) rounded = re(rounded, &context_);
    common = std::min(countCommonDigits(less, rounded, &context_), digits - 3);
    if (!isExactFunction) break;
  }
  unsigned known = static_cast<unsigned>(std::max(common, 0));
  if (!isExactFunction) known = std::min(known, certain_double);
  known = std::min(known, asked);
  if (known == 0) throw FaultS{CAS_CAUSE_NOT_CERTAIN, 0, {}};
  certain = std::min(certain, known);
  if (rounded.type != _CPLX) {
    return makeNumber(writeRounded(isExactReal(rounded) ? evalf(rounded, 1, &context_) : rounded, known));
  }
  gen const real = re(rounded, &context_), imaginary = im(rounded, &context_);
  ResultWriterC::NodeP const part =
      makeFunction(u"*", {makeNumber(writeRounded(evalf(imaginary, 1, &context_), known)), makeNamed(u"i")});
  if (is_zero(real, &context_)) return part;
  return makeFunction(u"+", {makeNumber(writeRounded(evalf(real, 1, &context_), known)), part});
}

AnswerS ComputationC::approximateAll(gen const& value) {
  gen const exact =
      forParts(value, [this](gen const& one) { return evaluator_.isConstant(one) ? one : shorten(one); });
  vecteur const all = lidnt(exact);
  for (gen const& one : all) {
    wstring name;
    bool const isFree = one.type == _IDNT && names_.findName(one, name);
    if (!isFree) continue;
    std::uint32_t at = 0;
    while (at < tree_.end(0) && tree_.crefNode(at).crefName() != name) ++at;
    throw FaultS{CAS_CAUSE_NO_VALUE, at < tree_.end(0) ? at : 0UL, name};
  }
  AnswerS answer;
  unsigned certain = CASResultS::all_digits;
  answer.value = approximateNode(exact, certain);
  if (!answer.value) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
  answer.cause = CAS_CAUSE_NONE;
  answer.digits = certain;
  return answer;
}

// ---- Equations
// ---------------------------------------------------------------------------------------------

// With names as coefficients it is the formula that everybody knows.
gen ComputationC::solveQuadratic(gen const& equation, gen const& variable) {
  if (isTruthValued(equation) || evaluator_.isConstant(subst(equation, variable, 0, false, &context_)))
    return 0;
  auto const at0 = [&](gen const& one) {
    return eval(subst(one, variable, 0, false, &context_), 1, &context_);
  };
  gen const whole = normal(equation, &context_);
  gen const first = derive(whole, variable, &context_),
            second = normal(derive(first, variable, &context_), &context_);
  vecteur const names = lidnt(second);
  bool const isQuadratic = !is_zero(second, &context_) && !hasFunction(whole, at_inv) &&
                           std::find(names.begin(), names.end(), variable) == names.end();
  if (!isQuadratic) return 0;
  gen const a = rdiv(second, 2, &context_), b = at0(first), c = at0(whole);
  gen const root = sqrt(normal(b * b - gen(4) * a * c, &context_), &context_);
  if (is_zero(root)) return vecteur(1, rdiv(-b, gen(2) * a, &context_));
  return makevecteur(rdiv(-b - root, gen(2) * a, &context_), rdiv(-b + root, gen(2) * a, &context_));
}

gen ComputationC::findSolutions(gen const& equation, gen const& variable) {
  gen const operands(makevecteur(equation, variable), _SEQ__VECT);
  gen found = solveQuadratic(equation, variable);
  if (found.type == _VECT) return found;
  found = _solve(operands, &context_);
  bool const isNone = found.type == _VECT && found._VECTptr->empty();
  // There may be complex ones.
  if (isNone && !isTruthValued(equation)) found = _cSolve(operands, &context_);
  return found;
}

bool ComputationC::addSolution(gen const& solution, gen const& variable,
                               std::vector<ResultWriterC::NodeP>& nodes) {
  ResultWriterC writer = makeWriter();
  if (isTruthValued(solution)) {
    nodes.push_back(writer.write(forParts(solution, [this](gen const& one) { return shorten(one); })));
    return bool(nodes.back());
  }
  // A rounded number is no exact solution.
  bool const isExact = hasAllDigits(solution) || !evaluator_.isConstant(solution);
  if (!isExact || solution.type == _VECT || solution == variable) return false;
  ResultWriterC::NodeP const value = writer.write(shorten(solution));
  if (value) nodes.push_back(makeFunction(u"=", {makeNamed(question_.variable), value}));
  return bool(value);
}

AnswerS ComputationC::solve() {
  gen const variable = names_.find(question_.variable);
  gen const equation = evaluate();
  if (equation.type == _VECT) throw FaultS{CAS_CAUSE_WRONG_ARGUMENT, 0, {}};
  AnswerS answer;
  answer.cause = CAS_CAUSE_NONE;
  vecteur const names = lidnt(equation);
  bool const isDecided = isTruthValued(equation) && equation.type != _SYMB;
  if (isDecided || std::find(names.begin(), names.end(), variable) == names.end()) {
    int const sign = isDecided ? 0 : evaluator_.findSign(equation);
    if (sign == 2) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
    answer.value = makeNamed(isTruth(equation, false) || sign != 0 ? u"false" : u"true");
    return answer;
  }
  if (!isTruthValued(equation) && is_zero(normal(equation, &context_), &context_)) {
    answer.value = makeNamed(u"true");
    return answer;
  }
  gen const found = findSolutions(equation, variable);
  if (found.type != _VECT) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
  std::vector<ResultWriterC::NodeP> nodes;
  for (gen const& solution : *found._VECTptr) {
    if (!addSolution(solution, variable, nodes)) throw FaultS{CAS_CAUSE_NEEDS_ALGEBRA, 0, {}};
  }
  answer.value = nodes.empty()       ? makeNamed(u"false")
                 : nodes.size() == 1 ? nodes[0]
                                     : makeFunction(u"list", std::move(nodes));
  return answer;
}

}  // namespace zolt::giac_worker
