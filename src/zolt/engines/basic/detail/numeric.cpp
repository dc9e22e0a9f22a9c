#include "zolt/engines/basic/detail/numeric.h"

#include <cmath>
#include <limits>
#include <utility>

#include "zolt/engines/basic/detail/quadrature.h"

namespace zolt::engine_basic::detail {

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
constexpr BallS pi{3.14159265358979323846, 1.3e-16};

constexpr BallS truth(bool isTrue) { return {isTrue ? 1.0 : 0.0, 0}; }

}  // namespace

BallS toBall(RationalC const& number) {
  constexpr std::int64_t exact_limit = std::int64_t{1} << 53;
  BigIntegerC const& top = number.crefNumerator();
  BigIntegerC const& bottom = number.crefDenominator();
  auto const isShort = [](BigIntegerC const& n) {
    return n.isSmall() && n.toSmall() <= exact_limit && n.toSmall() >= -exact_limit;
  };
  BallS ball;
  if (isShort(top) && isShort(bottom)) {
    BallS const numerator{static_cast<double>(top.toSmall()), 0};
    if (number.isInteger()) return numerator;
    if (divideBalls(numerator, {static_cast<double>(bottom.toSmall()), 0}, ball) == DEFINED) return ball;
  }
  // Both parts lose half a unit, and so does their quotient.
  double const value = number.toDouble();
  return {value, std::isfinite(value) ? 2 * epsilon * std::fabs(value) + 1e-320 : 0};
}

NumericC::NumericC(PlanS const& plan, CASAngleE angle, WatchC& watch)
    : plan_(plan), angle_(angle), watch_(watch), values_(plan.steps.size()), slots_(plan.slots.size()) {
  numbers_.reserve(plan.numbers.size());
  for (RationalC const& number : plan.numbers) numbers_.push_back(toBall(number));
}

bool NumericC::run(std::uint32_t result, BallS& value) {
  if (!runSteps(0, result + 1)) return false;
  value = values_[result];
  return true;
}

bool NumericC::runSteps(std::uint32_t begin, std::uint32_t end) {
  std::vector<LoopS> loops;
  for (std::uint32_t at = begin; at < end;) {
    StepS const& step = plan_.steps[at];
    if (!watch_.goOn()) return false;
    if (step.op == OP_BEGIN) {
      if (plan_.steps[step.end].op == OP_INTEGRAL) {
        if (!integrate(at)) return false;
        at = step.end + 1;
      } else if (!beginLoop(at, loops, at)) {
        return false;
      }
    } else if (step.op == OP_TOTAL) {
      LoopS& loop = loops.back();
      loop.total = addBalls(loop.total, operand(step, 2));
      loop.next.middle += 1;
      if (loop.next.middle <= loop.last.middle) {
        slots_[step.index] = loop.next;
        at = loop.begin + 1;
      } else {
        values_[at++] = loop.total;
        loops.pop_back();
      }
    } else {
      if (!runStep(step, values_[at])) return false;
      ++at;
    }
  }
  return true;
}

bool NumericC::beginLoop(std::uint32_t at, std::vector<LoopS>& loops, std::uint32_t& next) {
  constexpr double most = 9e15;  // above, whole numbers have no successor
  StepS const& step = plan_.steps[at];
  watch_.setPart(step.part);
  // A derivative is taken before numbers are.
  if (plan_.steps[step.end].op != OP_TOTAL) return watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA);
  BallS const from = operand(step, 0), to = operand(step, 1);
  if (std::isinf(from.middle) || std::isinf(to.middle)) return watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA);
  if (!from.isExact() || !to.isExact()) return watch_.fail(CAS_CAUSE_NOT_CERTAIN);
  bool const isWhole = std::floor(from.middle) == from.middle && std::floor(to.middle) == to.middle;
  if (!isWhole) return watch_.fail(CAS_CAUSE_WRONG_ARGUMENT);
  if (std::fabs(from.middle) > most || std::fabs(to.middle) > most) return watch_.fail(CAS_CAUSE_TOO_LARGE);
  if (from.middle > to.middle) {
    values_[step.end] = {};
    next = step.end + 1;
    return true;
  }
  loops.push_back({at, from, to, {}});
  slots_[step.index] = from;
  next = at + 1;
  return true;
}

bool NumericC::check(DefinedE defined, StepS const& step) {
  if (defined == DEFINED) return true;
  static constexpr CASCauseE causes[] = {
      CAS_CAUSE_NONE,      CAS_CAUSE_NOT_CERTAIN, CAS_CAUSE_NOT_REAL,      CAS_CAUSE_DIVISION_BY_ZERO,
      CAS_CAUSE_UNDEFINED, CAS_CAUSE_TOO_LARGE,   CAS_CAUSE_WRONG_ARGUMENT};
  return watch_.fail(causes[defined], step.part, {});
}

bool NumericC::runSum(StepS const& step, BallS& result) {
  if (!watch_.goOn(step.count)) return false;
  BallS sum;
  for (std::uint32_t i = 0; i < step.count; ++i) {
    OperandS const& term = plan_.operand(step, i);
    BallS const value = values_[term.step];
    sum = i == 0 && !term.isFlagged ? value : addBalls(sum, term.isFlagged ? negateBall(value) : value);
  }
  result = sum;
  if (std::isfinite(sum.middle)) return true;
  if (std::isnan(sum.middle)) return check(DEFINED_NOWHERE, step);
  return plan_.hasInfinity || check(DEFINED_TOO_LARGE, step);
}

bool NumericC::runProduct(StepS const& step, BallS& result) {
  if (!watch_.goOn(step.count)) return false;
  BallS product{1, 0};
  for (std::uint32_t i = 0; i < step.count; ++i) {
    OperandS const& factor = plan_.operand(step, i);
    BallS const value = values_[factor.step];
    if (factor.isFlagged) {
      DefinedE const defined = divideBalls(product, value, product);
      if (defined != DEFINED) {
        static_cast<void>(check(defined, step));
        if (defined == DEFINED_DIVIDES_BY_ZERO) {
          watch_.takeFault();
          watch_.fail(CAS_CAUSE_DIVISION_BY_ZERO, factor.part, {});
        }
        return false;
      }
    } else {
      product = i == 0 ? value : multiplyBalls(product, value);
    }
  }
  result = product;
  if (std::isfinite(product.middle)) return true;
  if (std::isnan(product.middle)) return check(DEFINED_NOWHERE, step);
  return plan_.hasInfinity || check(DEFINED_TOO_LARGE, step);
}

bool NumericC::compare(StepS const& step, BallS& result) {
  int order = 0;
  if (!compareBalls(operand(step, 0), operand(step, 1), &order)) return check(DEFINED_PERHAPS, step);
  bool const holds = step.op == OP_EQUAL           ? order == 0
                     : step.op == OP_NOT_EQUAL     ? order != 0
                     : step.op == OP_LESS          ? order < 0
                     : step.op == OP_GREATER       ? order > 0
                     : step.op == OP_LESS_OR_EQUAL ? order <= 0
                                                   : order >= 0;
  result = truth(holds);
  return true;
}

bool NumericC::decide(StepS const& step, BallS& result) {
  bool isTrue = step.op == OP_AND;
  if (step.op == OP_NOT) {
    isTrue = operand(step, 0).middle == 0;
  } else {
    for (std::uint32_t i = 0; i < step.count; ++i) {
      bool const value = operand(step, i).middle != 0;
      isTrue = step.op == OP_AND ? isTrue && value : isTrue || value;
    }
  }
  result = truth(isTrue);
  return true;
}

BallS NumericC::toRadians(BallS angle) const {
  if (angle_ == CAS_RADIANS) return angle;
  BallS radians;
  static_cast<void>(divideBalls(multiplyBalls(angle, pi), {180, 0}, radians));
  return radians;
}

BallS NumericC::fromRadians(BallS angle) const {
  if (angle_ == CAS_RADIANS) return angle;
  BallS degrees;
  static_cast<void>(divideBalls(multiplyBalls(angle, {180, 0}), pi, degrees));
  return degrees;
}

bool NumericC::runStep(StepS const& step, BallS& result) {
  BallS const a = step.count > 0 ? operand(step, 0) : BallS{};
  BallS const b = step.count > 1 ? operand(step, 1) : BallS{};
  DefinedE defined = DEFINED;
  switch (step.op) {
    case OP_NUMBER:
      result = numbers_[step.index];
      return std::isfinite(result.middle) || check(DEFINED_TOO_LARGE, step);
    case OP_PI:
      result = pi;
      return true;
    case OP_INFINITY:
      result = {std::numeric_limits<double>::infinity(), 0};
      return true;
    case OP_TRUE:
    case OP_FALSE:
      result = truth(step.op == OP_TRUE);
      return true;
    case OP_NAME:
      result = names_;
      if (hasNames_) return true;
      return watch_.fail(CAS_CAUSE_NO_VALUE, step.part, plan_.names[step.index]);
    case OP_SLOT:
      result = slots_[step.index];
      return true;
    case OP_SUM:
      return runSum(step, result);
    case OP_PRODUCT:
      return runProduct(step, result);
    case OP_POWER:
      defined = raiseBall(a, b, result);
      break;
    case OP_SQRT:
      defined = rootOfBall(a, {2, 0}, result);
      break;
    case OP_ROOT:
      defined = rootOfBall(a, b, result);
      break;
    case OP_DIV:
    case OP_MOD:
      defined = wholeQuotient(a, b, result);
      if (defined == DEFINED && step.op == OP_MOD) result = addBalls(a, negateBall(multiplyBalls(result, b)));
      break;
    case OP_FACTORIAL:
      defined = factorialOfBall(a, result);
      break;
    case OP_ABS:
      result = {std::fabs(a.middle), a.error};
      break;
    case OP_FLOOR:
      defined = floorOfBall(a, result);
      break;
    case OP_CEIL:
      defined = floorOfBall(negateBall(a), result);
      result = negateBall(result);
      break;
    case OP_LOG:
    case OP_LOG10: {
      BallS top, bottom;
      defined = logarithmOfBall(a, top);
      if (defined == DEFINED) defined = logarithmOfBall(step.op == OP_LOG ? b : BallS{10, 0}, bottom);
      if (defined == DEFINED) defined = divideBalls(top, bottom, result);
      break;
    }
    case OP_LN:
      defined = logarithmOfBall(a, result);
      break;
    case OP_EXP:
      result = std::isinf(a.middle) ? BallS{std::exp(a.middle), 0} : risingOfBall(std::exp, a);
      break;
    case OP_SIN:
    case OP_COS:
    case OP_TAN:
      if (std::isinf(a.middle)) return check(DEFINED_NOWHERE, step);
      if (step.op == OP_SIN) result = sineOfBall(toRadians(a));
      if (step.op == OP_COS) result = cosineOfBall(toRadians(a));
      if (step.op == OP_TAN) defined = tangentOfBall(toRadians(a), result);
      break;
    case OP_ASIN:
    case OP_ACOS:
      if (step.op == OP_ASIN) defined = arcOfBall(std::asin, a, result);
      if (step.op == OP_ACOS) defined = arcOfBall(std::acos, a, result);
      if (defined == DEFINED) result = fromRadians(result);
      break;
    case OP_ATAN:
      result = fromRadians(std::isinf(a.middle) ? BallS{std::atan(a.middle), epsilon}
                                                : risingOfBall(std::atan, a));
      break;
    case OP_SINH:
      result = risingOfBall(std::sinh, a);
      break;
    case OP_COSH:
      result = coshOfBall(a);
      break;
    case OP_TANH:
      result = risingOfBall(std::tanh, a);
      break;
    case OP_RAD:
      result = fromRadians(a);
      break;
    case OP_DEG:
      if (angle_ == CAS_RADIANS) defined = divideBalls(multiplyBalls(a, pi), {180, 0}, result);
      if (angle_ == CAS_DEGREES) result = a;
      break;
    case OP_NOT:
    case OP_AND:
    case OP_OR:
      return decide(step, result);
    default:
      return compare(step, result);
  }
  if (defined == DEFINED && std::isnan(result.middle)) defined = DEFINED_NOWHERE;
  if (defined == DEFINED && std::isinf(result.middle) && !plan_.hasInfinity) defined = DEFINED_TOO_LARGE;
  return check(defined, step);
}

bool NumericC::integrate(std::uint32_t begin) {
  StepS const& step = plan_.steps[begin];
  watch_.setPart(step.part);
  if (integrals_ == max_nested_integrals) return watch_.fail(CAS_CAUSE_TOO_LARGE);
  BallS const lower = operand(step, 0), upper = operand(step, 1);
  ++integrals_;
  OperandS const& body = plan_.operand(plan_.steps[step.end], 2);
  auto const value = [&](double x, double error, BallS* y) {
    slots_[step.index] = {x, error};
    // An operand of the body may be outside of it, when it does not depend on the variable.
    if (!runSteps(begin + 1, step.end)) return false;
    *y = values_[body.step];
    return true;
  };
  bool const done = integrateBall(value, lower, upper, watch_, step.part, &values_[step.end]);
  --integrals_;
  return done;
}

}  // namespace zolt::engine_basic::detail
