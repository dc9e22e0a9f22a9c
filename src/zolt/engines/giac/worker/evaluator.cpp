// SPDX-License-Identifier: GPL-3.0-or-later
#include "zolt/engines/giac/worker/evaluator.h"

#include <algorithm>
#include <stdexcept>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"

namespace zolt::giac_worker {

using namespace giac;
using namespace math::algexpr;

namespace {

constexpr unsigned most_nested = 4000;

bool isNumberText(wstring const& name) {
  std::size_t const at = math::common::isMinus(name[0]) && name.size() > 1 ? 1 : 0;
  return math::common::startsNumber(name[at]);
}

gen wholeNumber(std::u16string_view digits) {
  constexpr std::size_t most_small = 9;
  std::string const text(digits.begin(), digits.end());
  if (digits.size() <= most_small) return digits.empty() ? 0 : std::stoi(text);
  mpz_t number;
  mpz_init_set_str(number, text.c_str(), 10);
  gen const value(number);
  mpz_clear(number);
  return value;
}

}  // namespace

gen approximate(gen const& value, int digits, context* context) {
  int const before = decimal_digits(context);
  decimal_digits(digits, context);
  gen const result = evalf(value, 1, context);
  decimal_digits(before, context);
  return result;
}

bool hasFunction(gen const& value, unary_function_ptr const* function) {
  if (value.type == _VECT) {
    vecteur const& all = *value._VECTptr;
    return std::any_of(all.begin(), all.end(), [&](gen const& one) { return hasFunction(one, function); });
  }
  if (value.type == _FRAC) {
    return hasFunction(value._FRACptr->num, function) || hasFunction(value._FRACptr->den, function);
  }
  if (value.type != _SYMB) return false;
  return value._SYMBptr->sommet == function || hasFunction(value._SYMBptr->feuille, function);
}

bool hasRoot(gen const& value) {
  if (value.type == _VECT) return std::any_of(value._VECTptr->begin(), value._VECTptr->end(), hasRoot);
  if (value.type != _SYMB) return false;
  gen const& operand = value._SYMBptr->feuille;
  unary_function_ptr const& function = value._SYMBptr->sommet;
  bool const isRoot = function == at_sqrt ||
                      (function == at_pow && operand.type == _VECT && operand._VECTptr->back().type == _FRAC);
  return isRoot || hasRoot(operand);
}

// With an order, the algebra system brings quotients over one denominator, and multiplies all powers out.
gen derived(gen const& value, gen const& variable, gen const& order, giac::context* context) {
  gen const first = is_one(order) ? derive(value, variable, context) : undef;
  return is_undef(first) || hasFunction(first, at_inv) ? derive(value, variable, order, context)
                                                       : eval(first, 1, context);
}

gen replaced(gen const& value, unary_function_ptr const* function,
             std::function<gen(gen const& operation)> const& change) {
  if (value.type == _VECT) {
    vecteur all;
    for (gen const& one : *value._VECTptr) all.push_back(replaced(one, function, change));
    return gen(all, value.subtype);
  }
  if (value.type == _FRAC && !isExactReal(value)) {
    gen const above = replaced(value._FRACptr->num, function, change);
    return fraction(above, replaced(value._FRACptr->den, function, change));
  }
  if (value.type != _SYMB) return value;
  gen const inside = symbolic(value._SYMBptr->sommet, replaced(value._SYMBptr->feuille, function, change));
  return value._SYMBptr->sommet == function ? change(inside) : inside;
}

bool isMatrix(gen const& value) {
  return value.type == _VECT && value.subtype != _SET__VECT && ckmatrix(value);
}
bool haveSameSize(gen const& a, gen const& b) {
  int rows = 0, columns = 0, otherRows = 0, otherColumns = 0;
  mdims(*a._VECTptr, rows, columns);
  mdims(*b._VECTptr, otherRows, otherColumns);
  return rows == otherRows && columns == otherColumns;
}
bool isSet(gen const& value) { return value.type == _VECT && value.subtype == _SET__VECT; }

EvaluatorC::EvaluatorC(DefinitionsT const& definitions, CASAngleE angle, GiacNamesC& names,
                       giac::context* context)
    : definitions_(definitions), angle_(angle), names_(names), context_(context) {}

gen EvaluatorC::evaluate(FlatTreeC const& tree, wstring const& variable) {
  whole_ = &tree;
  if (!variable.empty()) meanings_[variable] = names_.find(variable);
  return evaluate(PlaceS{&tree, 0});
}

unsigned long EvaluatorC::partOf(PlaceS place) const { return place.tree == whole_ ? place.at : outerPart_; }

void EvaluatorC::fail(CASCauseE cause, PlaceS place, wstring subject) const {
  throw FaultS{cause, partOf(place), std::move(subject)};
}

gen EvaluatorC::evaluate(PlaceS place) {
  if (++depth_ > most_nested) fail(CAS_CAUSE_TOO_LARGE, place);
  try {
    gen const value = evaluateNode(place);
    --depth_;
    return value;
  } catch (std::bad_alloc const&) {
    fail(CAS_CAUSE_TOO_LARGE, place);
  } catch (std::exception const&) {
    // What the algebra system says is for its own users.
    fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  }
}

gen EvaluatorC::evaluateNode(PlaceS place) {
  NodeABC const& node = nodeOf(place);
  wstring const& name = node.crefName();
  if (countChildren(place) == 0) {
    return isNumberText(name) ? evaluateNumber(place, name) : evaluateName(place, name);
  }
  auto const handler = handlers().find(name);
  if (handler != handlers().end()) return (this->*handler->second)(place);
  return evaluateCall(place, name);
}

std::map<wstring, EvaluatorC::HandlerT> const& EvaluatorC::handlers() {
  using E = EvaluatorC;
  static std::map<wstring, HandlerT> const all{{u"+", &E::evaluateSum},
                                               {u"-", &E::evaluateSum},
                                               {u"*", &E::evaluateProduct},
                                               {u"/", &E::evaluateQuotient},
                                               {u"^", &E::evaluatePower},
                                               {u"_neg", &E::evaluateNegative},
                                               {u"_pos", &E::evaluateSame},
                                               {u"_quietpos", &E::evaluateSame},
                                               {u"sqrt", &E::evaluateSqrt},
                                               {u"nthroot", &E::evaluateRoot},
                                               {u"log", &E::evaluateLog},
                                               {u"div", &E::evaluateDivMod},
                                               {u"mod", &E::evaluateDivMod},
                                               {u"!", &E::evaluateFactorial},
                                               {u"percent", &E::evaluatePercent},
                                               {u"permille", &E::evaluatePercent},
                                               {u"_rad", &E::evaluateAngle},
                                               {u"_deg", &E::evaluateAngle},
                                               {u"=", &E::evaluateRelation},
                                               {u"<>", &E::evaluateRelation},
                                               {u"<", &E::evaluateRelation},
                                               {u">", &E::evaluateRelation},
                                               {u"<=", &E::evaluateRelation},
                                               {u">=", &E::evaluateRelation},
                                               {u"not", &E::evaluateLogic},
                                               {u"and", &E::evaluateLogic},
                                               {u"or", &E::evaluateLogic},
                                               {u"implies", &E::evaluateLogic},
                                               {u"iff", &E::evaluateLogic},
                                               {u"sum", &E::evaluateSeries},
                                               {u"product", &E::evaluateSeries},
                                               {u"integral", &E::evaluateIntegral},
                                               {u"antiderivative", &E::evaluateAntiderivative},
                                               {u"diff", &E::evaluateDerivative},
                                               {u"pdiff", &E::evaluateDerivative},
                                               {u"diffn", &E::evaluateDerivative},
                                               {u"pdiffn", &E::evaluateDerivative},
                                               {u"limit", &E::evaluateLimit},
                                               {u"where", &E::evaluateWhere},
                                               {u"cases", &E::evaluateCases},
                                               {u"matrix", &E::evaluateTable},
                                               {u"det", &E::evaluateTable},
                                               {u"norm", &E::evaluateNorm},
                                               {u"set", &E::evaluateSet},
                                               {u"union", &E::evaluateSetOperation},
                                               {u"intersect", &E::evaluateSetOperation},
                                               {u"setminus", &E::evaluateSetOperation},
                                               {u"in", &E::evaluateMembership},
                                               {u"notin", &E::evaluateMembership},
                                               {u"subset", &E::evaluateMembership},
                                               {u"subseteq", &E::evaluateMembership},
                                               {u":=", &E::refuseSign},
                                               {u":>", &E::refuseSign},
                                               {u"+-", &E::refuseSign},
                                               {u"-+", &E::refuseSign},
                                               {u"_posneg", &E::refuseSign},
                                               {u"_negpos", &E::refuseSign},
                                               {u"to", &E::refuseSign},
                                               {u"approx", &E::refuseSign},
                                               {u"equiv", &E::refuseSign},
                                               {u"propto", &E::refuseSign},
                                               {u"sim", &E::refuseSign},
                                               {u"simeq", &E::refuseSign},
                                               {u"cong", &E::refuseSign},
                                               {u"ll", &E::refuseSign},
                                               {u"gg", &E::refuseSign},
                                               {u"mapsto", &E::refuseSign},
                                               {u"supset", &E::refuseSign},
                                               {u"supseteq", &E::refuseSign},
                                               {u"oplus", &E::refuseSign},
                                               {u"otimes", &E::refuseSign},
                                               {u"given", &E::refuseSign},
                                               {u"parallel", &E::refuseSign},
                                               {u"perp", &E::refuseSign},
                                               {u"partial", &E::refuseSign},
                                               {u"nabla", &E::refuseSign},
                                               {u"error", &E::refuseSign}};
  return all;
}

// ---- Numbers and names
// ---------------------------------------------------------------------------------------

gen EvaluatorC::evaluateNumber(PlaceS place, wstring const& text) {
  constexpr std::int64_t most_zeros = 100000;
  bool const isNegative = math::common::isMinus(text[0]);
  math::common::DecimalTextS parts;
  math::common::DecimalS decimal;
  bool const isRead =
      math::common::readDecimalText(std::u16string_view(text).substr(isNegative ? 1 : 0), parts) &&
      math::common::toDecimal(parts, decimal);
  if (!isRead) fail(CAS_CAUSE_TOO_LARGE, place);
  hasDecimals_ |= !parts.isInteger();
  std::int64_t const scale = decimal.exponent - static_cast<std::int64_t>(decimal.digits.size());
  if (scale > most_zeros || scale < -most_zeros) fail(CAS_CAUSE_TOO_LARGE, place);
  gen value = wholeNumber(decimal.digits);
  gen const power = pow(gen(10), static_cast<int>(scale < 0 ? -scale : scale));
  value = scale < 0 ? rdiv(value, power, context_) : value * power;
  return isNegative ? -value : value;
}

gen EvaluatorC::evaluateName(PlaceS place, wstring const& name) {
  if (name == u"_PI") return cst_pi;
  if (name.size() == 1 && name[0] == math::common::infinity_sign) return plus_inf;
  if (name == u"∅") return gen(vecteur(), _SET__VECT);
  auto const bound = meanings_.find(name);
  if (bound != meanings_.end()) return bound->second;
  auto const defined = definitions_.find(name);
  if (defined != definitions_.end() && defined->second.parameters.empty()) {
    auto const known = computed_.find(name);
    if (known != computed_.end()) return known->second;
    gen const value = evaluateDefinition(place, defined->second, {});
    return computed_[name] = value;
  }
  if (name == u"true" || name == u"false") return makeTruth(name == u"true");
  if (name == u"error") fail(CAS_CAUSE_UNDEFINED, place);
  return name == u"i" ? cst_i : names_.find(name);
}

gen EvaluatorC::evaluateDefinition(PlaceS place, CASDefinitionS const& definition, vecteur const& arguments) {
  if (expanding_.count(definition.name) > 0) fail(CAS_CAUSE_CIRCULAR, place, definition.name);
  FlatTreeC const*& body = bodies_[definition.name];
  if (!body) {
    trees_.emplace_back();
    if (!trees_.back().fill(*definition.value)) fail(CAS_CAUSE_TOO_LARGE, place);
    body = &trees_.back();
  }
  // Names in a definition mean what they mean outside, whatever is bound where it is used.
  MeaningsT outside;
  for (std::size_t i = 0; i < arguments.size(); ++i) outside[definition.parameters[i]] = arguments[i];
  outside.swap(meanings_);
  unsigned long const outerPart = outerPart_;
  outerPart_ = partOf(place);
  expanding_.insert(definition.name);
  gen const value = evaluate(PlaceS{body, 0});
  expanding_.erase(definition.name);
  outerPart_ = outerPart;
  outside.swap(meanings_);
  return value;
}

gen EvaluatorC::evaluateWith(PlaceS place, wstring const& variable, gen const& value) {
  MeaningsT const outside = meanings_;
  meanings_[variable] = value;
  gen const result = evaluate(place);
  meanings_ = outside;
  return result;
}

wstring const& EvaluatorC::variableAt(PlaceS place, unsigned index) const {
  PlaceS const at = child(place, index);
  wstring const& name = nodeOf(at).crefName();
  if (countChildren(at) > 0 || isNumberText(name) || name == u"_PI") fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  return name;
}

gen EvaluatorC::outerValue(PlaceS place, unsigned index) {
  PlaceS const at = child(place, index);
  wstring const& name = nodeOf(at).crefName();
  // A variable of this name is meant, not the imaginary unit.
  bool const isFree = meanings_.count(name) == 0 && definitions_.count(name) == 0;
  return isFree ? names_.find(name) : evaluateName(at, name);
}

// ---- Functions
// -----------------------------------------------------------------------------------------------

gen EvaluatorC::evaluateNumberAt(PlaceS place, unsigned index) {
  gen const value = evaluate(child(place, index));
  if (isTruthValued(value)) fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, index));
  return value;
}

vecteur EvaluatorC::evaluateChildren(PlaceS place) {
  vecteur values;
  std::uint32_t at = place.at + 1;
  for (; at < place.tree->end(place.at); at = place.tree->end(at)) {
    values.push_back(evaluate(PlaceS{place.tree, at}));
    if (isTruthValued(values.back())) fail(CAS_CAUSE_WRONG_ARGUMENT, {place.tree, at});
  }
  return values;
}

gen EvaluatorC::checked(gen const& result, PlaceS place, bool mayBeInfinite) const {
  bool const isInfinite = is_inf(result);
  if (is_undef(result) || result == unsigned_inf || (isInfinite && !mayBeInfinite)) {
    fail(CAS_CAUSE_UNDEFINED, place);
  }
  return result;
}

gen EvaluatorC::openAt(gen const& result, unary_function_ptr const* function, PlaceS place) {
  if (hasFunction(result, function) && openPart_ == CASResultS::no_part) openPart_ = partOf(place);
  return result;
}

// A constant factor of a logarithm is an exponent of what is in it.
gen EvaluatorC::exponential(gen const& exponent) const {
  if (exponent.type != _SYMB) return exp(exponent, context_);
  gen const& operand = exponent._SYMBptr->feuille;
  unary_function_ptr const& function = exponent._SYMBptr->sommet;
  if (function == at_ln) return operand;
  if (function == at_neg) return inv(exponential(operand), context_);
  if (operand.type != _VECT) return exp(exponent, context_);
  vecteur parts = *operand._VECTptr;
  if (function == at_plus) {
    gen product = 1;
    for (gen const& term : parts) product = product * exponential(term);
    return product;
  }
  auto const logarithm = std::find_if(parts.begin(), parts.end(), [](gen const& factor) {
    return factor.type == _SYMB && factor._SYMBptr->sommet == at_ln;
  });
  if (function != at_prod || logarithm == parts.end()) return exp(exponent, context_);
  gen const base = logarithm->_SYMBptr->feuille;
  parts.erase(logarithm);
  gen const factor = _prod(gen(parts, _SEQ__VECT), context_);
  return isConstant(factor) ? pow(base, factor, context_) : exp(exponent, context_);
}

// The algebra system leaves the hyperbolic functions of a logarithm as they are.
gen EvaluatorC::withoutLogarithm(gen const& result) const {
  gen simple = result;
  for (unary_function_ptr const* const function : {at_sinh, at_cosh, at_tanh}) {
    simple = replaced(simple, function, [&](gen const& call) {
      gen const& argument = call._SYMBptr->feuille;
      if (!hasFunction(argument, at_ln)) return call;
      gen const up = exponential(argument), down = inv(up, context_);
      gen const sum = up + down, difference = up - down;
      gen const value = normal(function == at_sinh   ? rdiv(difference, gen(2), context_)
                               : function == at_cosh ? rdiv(sum, gen(2), context_)
                                                     : rdiv(difference, sum, context_),
                               context_);
      return hasFunction(value, at_exp) ? call : value;
    });
  }
  return simple;
}

gen EvaluatorC::evaluateCall(PlaceS place, wstring const& name) {
  auto const defined = definitions_.find(name);
  vecteur operands = evaluateChildren(place);
  if (defined != definitions_.end() && !defined->second.parameters.empty()) {
    if (operands.size() != defined->second.parameters.size()) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    return evaluateDefinition(place, defined->second, operands);
  }
  unary_function_ptr const* const function = findFunction(name, operands.size());
  if (!function) {
    gen const argument = operands.size() == 1 ? operands[0] : gen(operands, _SEQ__VECT);
    return symbolic(at_of, gen(makevecteur(names_.find(name), argument), _SEQ__VECT));
  }
  bool isInfinite = false;
  for (unsigned i = 0; i < operands.size(); ++i) {
    if (operands[i].type == _VECT && name != u"conj") fail(CAS_CAUSE_WRONG_ARGUMENT, child(place, i));
    isInfinite |= is_inf(operands[i]);
  }
  bool const takesAngle = function == at_sin || function == at_cos || function == at_tan ||
                          function == at_cot || function == at_sec || function == at_csc;
  bool const givesAngle =
      function == at_asin || function == at_acos || function == at_atan || function == at_arg;
  bool const isInDegrees = angle_ == CAS_DEGREES;
  if (takesAngle && isInDegrees) operands[0] = operands[0] * cst_pi / gen(180);
  gen const argument = operands.size() == 1 ? operands[0] : gen(operands, _SEQ__VECT);
  gen result = checked((*function)(argument, context_), place, isInfinite);
  bool const isHyperbolic = function == at_sinh || function == at_cosh || function == at_tanh;
  if (isHyperbolic) result = withoutLogarithm(result);
  if (function == at_exp && hasFunction(argument, at_ln)) result = exponential(argument);
  // A tangent that is nearly one of its table is taken for that.
  bool const isFromTable =
      function == at_atan && !isInfinite && isConstant(argument) && !hasFunction(result, at_atan);
  if (isFromTable) {
    constexpr int digits = 40;
    gen const distance = abs(approximate(tan(result, context_) - argument, digits, context_), context_);
    if (is_strictly_greater(distance, gen(1e-30), context_)) fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
  }
  if (givesAngle && isInDegrees) result = normal(result * gen(180) / cst_pi, context_);
  return result;
}

gen EvaluatorC::refuseSign(PlaceS place) {
  bool const isAssignment = nodeOf(place).crefName() == u":=" || nodeOf(place).crefName() == u":>";
  if (isAssignment) fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  if (nodeOf(place).crefName() == u"error") fail(CAS_CAUSE_UNDEFINED, place);
  fail(CAS_CAUSE_NEEDS_ALGEBRA, place);
}

// ---- What is known of values
// ---------------------------------------------------------------------------------

bool EvaluatorC::isConstant(gen const& value) const {
  vecteur const all = lidnt(value);
  return std::none_of(all.begin(), all.end(), [&](gen const& one) {
    wstring name;
    return one.type != _IDNT || names_.findName(one, name);
  });
}

int EvaluatorC::findSign(gen const& value) const {
  constexpr int digits = 40;
  if (value == plus_inf) return 1;
  if (value == minus_inf) return -1;
  if (isExactReal(value)) return is_zero(value, context_) ? 0 : is_positive(value, context_) ? 1 : -1;
  gen const simple = value.type == _SYMB ? normal(value, context_) : value;
  if (is_zero(simple, context_)) return 0;
  if (!isConstant(simple)) return 2;
  gen const rounded = approximate(simple, digits, context_);
  bool const isFine = rounded.type == _DOUBLE_ || rounded.type == _REAL;
  if (!isFine) return 2;
  double const size = evalf_double(rounded, 1, context_)._DOUBLE_val;
  if (size > 1e-25) return 1;
  if (size < -1e-25) return -1;
  return is_zero(giac::simplify(simple, context_), context_) ? 0 : 2;
}

}  // namespace zolt::giac_worker
