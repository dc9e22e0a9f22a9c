#include "zolt/engines/basic/detail/computation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/engines/basic/detail/equation.h"
#include "zolt/engines/basic/detail/exact.h"
#include "zolt/engines/basic/detail/numeric.h"
#include "zolt/engines/basic/detail/term_calculus.h"
#include "zolt/engines/basic/detail/term_functions.h"
#include "zolt/engines/basic/detail/term_integral.h"
#include "zolt/engines/basic/detail/term_plan.h"

namespace zolt::engine_basic::detail {

namespace {

constexpr unsigned double_digits = 15;
constexpr unsigned most_digits = 10000;

bool isError(CASCauseE cause) { return cause >= CAS_CAUSE_DIVISION_BY_ZERO; }

}  // namespace

ComputationC::ComputationC(CASRequestS const& request, WatchC& watch)
    : request_(request), watch_(watch), pool_(watch, request.angle), definitions_(request.definitions) {}

CASResultS ComputationC::run(NodeP const& node) {
  bool const isAboutVariable = request_.operation & (CAS_SOLVE | CAS_DIFFERENTIATE | CAS_INTEGRATE);
  if (isAboutVariable) {
    if (!isWritableName(request_.variable)) return fail({CAS_CAUSE_WRONG_ARGUMENT, CASResultS::no_part, {}});
    if (definitions_) definitions_ = definitions_->without(request_.variable);
  }
  NodeP planned = node;
  ParentNodeABC const* const parent = node->asParent();
  bool const isEquation = parent && node->crefName() == u"=" && parent->numChildren() == 2;
  // The difference has the same parts with the same numbers.
  if (request_.operation == CAS_SOLVE && isEquation) {
    planned = makeFunction(u"-", {parent->childPointer(0), parent->childPointer(1)});
  }
  if (!makePlan(*planned, definitions_.get(), watch_, plan_)) return fail();
  // What remains is the value of the last step, wherever that is among the steps.
  if (request_.operation == CAS_APPROXIMATE) return approximate();
  TermT term = TermPoolC::zero;
  if (!evaluate(&term)) {
    return evaluateInfinite();
  }
  watch_.setPart(0);
  switch (request_.operation) {
    case CAS_EXPAND:
      return finish(expand(pool_, term));
    case CAS_SIMPLIFY:
      return finish(simplify(term));
    case CAS_FACTOR:
      return factor(term);
    case CAS_SOLVE:
      return solve(term);
    case CAS_DIFFERENTIATE:
      return finish(differentiate(pool_, term, variable()));
    case CAS_INTEGRATE:
      return integrate(term);
    default:
      return finish(term);
  }
}

// What infinite numbers amount to is known where doubles know it.
CASResultS ComputationC::evaluateInfinite() {
  bool const mayKnow = plan_.hasInfinity && !watch_.isOver() && request_.operation == CAS_EVALUATE;
  if (!mayKnow) return fail();
  FaultS const fault = watch_.takeFault();
  BallS ball;
  bool const isKnown = NumericC(plan_, request_.angle, watch_).run(plan_.result, ball) && ball.isExact();
  if (isKnown) return approximate(ball, plan_.steps[plan_.result].type);
  return isError(watch_.crefFault().cause) || watch_.isOver() ? fail() : fail(fault);
}

TermT ComputationC::variable() { return pool_.name(request_.variable); }

bool ComputationC::evaluate(TermT* term) {
  ExactC exact(plan_, pool_);
  bool const done = exact.run(term);
  openPart_ = exact.getOpenPart();
  return done;
}

// ---- Results
// -----------------------------------------------------------------------------------------------

CASResultS ComputationC::fail(FaultS const& fault) const {
  CASResultS result;
  result.outcome = isError(fault.cause) ? CAS_ERROR : CAS_UNEVALUATED;
  result.cause = fault.cause;
  result.part = fault.part;
  result.subject = fault.subject;
  return result;
}

CASResultS ComputationC::value(NodeP const& node) const {
  CASResultS result;
  result.outcome = CAS_VALUE;
  result.cause = CAS_CAUSE_NONE;
  result.value = new AlgebraicExpressionC(node, request_.expression->getCASSession());
  return result;
}

CASResultS ComputationC::finish(TermT term) {
  if (watch_.hasFailed()) return fail();
  for (TermT part : pool_.partsOf(term)) {
    // A sum or an integral that is still there has not been evaluated.
    OpE const op = pool_.cref(part).op;
    if (op == OP_TOTAL || op == OP_INTEGRAL) return fail({CAS_CAUSE_NEEDS_ALGEBRA, openPart_, {}});
  }
  FractionsE const fractions = plan_.hasDecimals ? FRACTIONS_AS_DECIMALS : FRACTIONS_AS_QUOTIENTS;
  NodeP const node = writeTerm(pool_, term, fractions, plan_.slots);
  return node ? value(node) : fail();
}

CASResultS ComputationC::decimal(RationalC const& number, unsigned digits, bool isValueExact) const {
  bool isExact = false;
  wstring text = number.toDecimal(digits, &isExact);
  // A rounded number shows that it is one.
  bool const isWhole = text.find_first_of(u".E") == text.npos;
  if (!isValueExact && isWhole) text += u".0";
  CASResultS result = value(makeNumber(text));
  result.certainDigits = isExact && isValueExact ? CASResultS::all_digits : digits;
  return result;
}

// ---- Numeric values
// ----------------------------------------------------------------------------------------

CASResultS ComputationC::approximate(BallS const& ball, TypeE type) {
  if (type == TYPE_TRUTH) return value(makeNamed(ball.middle != 0 ? u"true" : u"false"));
  if (std::isinf(ball.middle)) {
    NodeP const infinity = makeNamed({math::common::infinity_sign});
    return value(ball.middle > 0 ? infinity : makeOperation(u"_neg", {infinity}));
  }
  unsigned const asked = std::clamp(request_.digits, 1U, most_digits);
  if (ball.isExact()) return decimal(RationalC::fromDouble(ball.middle), asked, true);
  unsigned const certain = countCertainDigits(ball);
  return decimal(RationalC::fromDouble(ball.middle), std::min(asked, certain), false);
}

CASResultS ComputationC::approximate() {
  unsigned const asked = std::clamp(request_.digits, 1U, most_digits);
  BallS ball;
  TypeE const type = plan_.steps[plan_.result].type;
  bool isKnown = !plan_.needsTerms && NumericC(plan_, request_.angle, watch_).run(plan_.result, ball);
  unsigned certain = isKnown ? countCertainDigits(ball) : 0;
  bool const isEnough =
      isKnown && (type == TYPE_TRUTH || std::isinf(ball.middle) || (ball.isExact() && ball.middle != 0) ||
                  certain >= std::min(asked, double_digits));
  // In what is long, digits are lost to the number of steps, which exact ones cost many times as much.
  bool const isLong = plan_.steps.size() > 1000 && certain >= 10;
  if ((isEnough || isLong) && asked <= double_digits) return approximate(ball, type);
  FaultS const fault = watch_.takeFault();
  if (isError(fault.cause) || fault.cause == CAS_CAUSE_DEADLINE || fault.cause == CAS_CAUSE_STOPPED) {
    return fail(fault);
  }
  // Rounding has lost too much, or a name may cancel: what is left after exact steps may be better.
  TermT term = TermPoolC::zero;
  if (evaluate(&term)) {
    if (pool_.isNumber(term)) return decimal(pool_.numberOf(term), asked, true);
    if (pool_.isFunction(term, OP_TRUE) || pool_.isFunction(term, OP_FALSE)) {
      return value(makeNamed(pool_.isFunction(term, OP_TRUE) ? u"true" : u"false"));
    }
    BallS better;
    bool const isBetter = runTerm(term, better);
    // It is the reason when there is no other.
    bool const hasReason = isKnown || fault.cause != CAS_CAUSE_NONE;
    if (!isBetter && hasReason && !watch_.isOver()) watch_.takeFault();
    if (isBetter && (!isKnown || countCertainDigits(better) > certain)) {
      ball = better;
      certain = countCertainDigits(better);
      isKnown = true;
    }
  }
  if (isKnown && (certain > 0 || ball.isExact() || type == TYPE_TRUTH)) return approximate(ball, type);
  bool const isBetterReason = watch_.isOver() || isError(watch_.crefFault().cause);
  if (fault.cause != CAS_CAUSE_NONE && !isBetterReason) return fail(fault);
  if (watch_.hasFailed()) return fail();
  return fail({CAS_CAUSE_NOT_CERTAIN, 0, {}});
}

bool ComputationC::runTerm(TermT term, BallS& ball) {
  PlanS plan;
  return makePlan(pool_, term, watch_, plan) &&
         NumericC(plan, request_.angle, watch_).run(static_cast<std::uint32_t>(plan.steps.size() - 1), ball);
}

// ---- Commands
// ----------------------------------------------------------------------------------------------

CASResultS ComputationC::factor(TermT term) {
  constexpr std::uint32_t last_divisor = 1000000;
  if (!pool_.isInteger(term)) return fail({CAS_CAUSE_NEEDS_ALGEBRA, 0, {}});
  BigIntegerC rest = pool_.numberOf(term).crefNumerator();
  bool const isNegative = rest.sign() < 0;
  rest = rest.abs();
  std::vector<NodeP> factors;
  auto const add = [&](BigIntegerC const& prime, std::int64_t count) {
    NodeP const base = makeNumber(prime.toDigits());
    factors.push_back(count == 1 ? base
                                 : makeOperation(u"^", {base, makeNumber(BigIntegerC(count).toDigits())}));
  };
  BigIntegerC quotient, remainder;
  std::uint32_t divisor = 2;
  for (; divisor < last_divisor; divisor += divisor == 2 ? 1 : 2) {
    if (!watch_.goOn()) return fail();
    if (BigIntegerC::compare(BigIntegerC(divisor) * BigIntegerC(divisor), rest) > 0) break;
    std::int64_t count = 0;
    for (; rest.remainderBy(divisor) == 0; ++count) {
      BigIntegerC::divide(rest, divisor, quotient, remainder);
      rest = quotient;
    }
    if (count > 0) add(divisor, count);
  }
  if (divisor >= last_divisor) return fail({CAS_CAUSE_NEEDS_ALGEBRA, 0, {}});
  if (!rest.isOne() || factors.empty()) add(rest, 1);
  if (isNegative) {
    bool const isPower = factors[0]->asParent() != nullptr;
    factors[0] = isPower ? makeOperation(u"_neg", {factors[0]})
                         : makeNumber(math::common::minus_sign + factors[0]->crefName());
  }
  return value(makeOperation(u"*", std::move(factors)));
}

// Sums that are multiplied out may cancel; what is shorter is simpler.
TermT ComputationC::simplify(TermT term) {
  auto const sizeOf = [&](TermT top) {
    std::size_t size = 0;
    for (TermT part : pool_.partsOf(top)) {
      ++size;
      pool_.forEachPart(part, [&](TermT) { ++size; });
    }
    return size;
  };
  TermT const expanded = expand(pool_, term);
  if (!watch_.hasFailed()) return sizeOf(expanded) < sizeOf(term) ? expanded : term;
  if (!watch_.isOver()) watch_.takeFault();
  return term;
}

CASResultS ComputationC::integrate(TermT term) {
  TermT antiderivative = TermPoolC::zero;
  ReachE reach = REACH_UNKNOWN;
  if (integrateTerm(pool_, term, variable(), &antiderivative, &reach)) return finish(antiderivative);
  return watch_.hasFailed() ? fail() : fail({CAS_CAUSE_NEEDS_ALGEBRA, 0, {}});
}

CASResultS ComputationC::solve(TermT term) {
  SolutionsS solutions;
  bool const isRounded = request_.numbers == CAS_ROUNDED_NUMBERS;
  unsigned const digits = isRounded ? std::clamp(request_.digits, 1U, most_digits) : 0;
  if (!solveEquation(pool_, term, variable(), digits, solutions)) return fail();
  if (solutions.kind == SolutionsS::ALL) return value(makeNamed(u"true"));
  FractionsE const fractions = plan_.hasDecimals ? FRACTIONS_AS_DECIMALS : FRACTIONS_AS_QUOTIENTS;
  std::vector<NodeP> numbers;
  for (TermT solution : solutions.exact) {
    numbers.push_back(writeTerm(pool_, solution, fractions, plan_.slots));
    if (!numbers.back()) return fail();
  }
  unsigned certain = CASResultS::all_digits;
  for (std::size_t i = 0; i < solutions.rounded.size(); ++i) {
    CASResultS const number = decimal(solutions.rounded[i], digits, solutions.isRoundedExact[i]);
    certain = std::min(certain, number.certainDigits);
    numbers.push_back(number.value->getNode());
  }
  if (numbers.empty()) return value(makeNamed(u"false"));
  std::vector<NodeP> equations;
  for (NodeP const& number : numbers) {
    equations.push_back(makeOperation(u"=", {makeNamed(request_.variable), number}));
  }
  CASResultS result =
      value(equations.size() == 1 ? equations[0] : makeFunction(u"list", std::move(equations)));
  result.certainDigits = certain;
  return result;
}

}  // namespace zolt::engine_basic::detail
