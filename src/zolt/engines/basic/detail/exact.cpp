#include "zolt/engines/basic/detail/exact.h"

#include <algorithm>
#include <utility>

#include "zolt/engines/basic/detail/term_calculus.h"
#include "zolt/engines/basic/detail/term_functions.h"
#include "zolt/engines/basic/detail/term_plan.h"

namespace zolt::engine_basic::detail {

ExactC::ExactC(PlanS const& plan, TermPoolC& pool)
    : plan_(plan),
      pool_(pool),
      watch_(pool.refWatch()),
      values_(plan.steps.size()),
      slots_(plan.slots.size()) {
  // Names that come first in the expression come first in sums and products.
  std::vector<StepS> names;
  for (StepS const& step : plan.steps) {
    if (step.op == OP_NAME) names.push_back(step);
  }
  std::stable_sort(names.begin(), names.end(),
                   [](StepS const& a, StepS const& b) { return a.part < b.part; });
  for (StepS const& step : names) pool.name(plan.names[step.index]);
}

bool ExactC::run(TermT* value) {
  for (std::uint32_t at = 0; at < plan_.steps.size();) {
    StepS const& step = plan_.steps[at];
    watch_.setPart(step.part);
    if (!watch_.goOn()) return false;
    if (step.op == OP_BEGIN) {
      if (!begin(at, at)) return false;
    } else if (step.op == OP_TOTAL && !loops_.empty() && loops_.back().begin == step.end) {
      if (!endTotal(at, at)) return false;
    } else {
      values_[at++] = runStep(step);
      if (watch_.hasFailed()) return false;
    }
  }
  *value = values_[plan_.result];
  return true;
}

bool ExactC::isInfinite(TermT term) const {
  if (pool_.isFunction(term, OP_INFINITY)) return true;
  TermS const& record = pool_.cref(term);
  return record.kind == TERM_SUM && record.summands.size() == 1 &&
         pool_.isFunction(record.summands[0].term, OP_INFINITY);
}

TermT ExactC::runStep(StepS const& step) {
  switch (step.op) {
    case OP_NUMBER:
      return pool_.number(plan_.numbers[step.index]);
    case OP_NAME:
      return pool_.name(plan_.names[step.index]);
    case OP_SLOT:
      return slots_[step.index];
    case OP_PI:
    case OP_INFINITY:
    case OP_TRUE:
    case OP_FALSE:
      return pool_.function(step.op, {});
    case OP_SUM:
      return runSum(step);
    case OP_PRODUCT:
      return runProduct(step);
    case OP_TOTAL:
      return leave(step);
    case OP_INTEGRAL:
      return integrate(step);
    case OP_ANTIDERIVATIVE:
      return findAntiderivative(step);
    case OP_DIFF: {
      TermT const variable = slots_[step.index];
      TermT const derivative = differentiate(pool_, operand(step, 1), variable);
      return watch_.hasFailed() ? TermPoolC::zero : substitute(pool_, derivative, variable, operand(step, 0));
    }
    default:
      break;
  }
  std::vector<TermT> arguments;
  for (std::uint32_t i = 0; i < step.count; ++i) {
    arguments.push_back(operand(step, i));
    if (plan_.hasInfinity && isInfinite(arguments.back())) watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA);
  }
  return apply(pool_, step.op, arguments);
}

TermT ExactC::runSum(StepS const& step) {
  std::vector<SummandS> summands;
  for (std::uint32_t i = 0; i < step.count; ++i) {
    OperandS const& summand = plan_.operand(step, i);
    summands.push_back({values_[summand.step], summand.isFlagged ? -1 : 1});
    // What infinities cancel to is not known; only their sign can be changed.
    bool const isOpen = plan_.hasInfinity && step.count > 1 && isInfinite(summands.back().term);
    if (isOpen) watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA);
  }
  return pool_.sum(std::move(summands));
}

TermT ExactC::runProduct(StepS const& step) {
  std::vector<FactorS> factors;
  TermT const inverse = pool_.number(-1);
  for (std::uint32_t i = 0; i < step.count; ++i) {
    OperandS const& factor = plan_.operand(step, i);
    TermT const term = values_[factor.step];
    if (factor.isFlagged && term == TermPoolC::zero) watch_.fail(CAS_CAUSE_DIVISION_BY_ZERO, factor.part, {});
    if (plan_.hasInfinity && isInfinite(term)) watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA);
    factors.push_back({term, factor.isFlagged ? inverse : TermPoolC::one});
  }
  return pool_.product(std::move(factors));
}

bool ExactC::begin(std::uint32_t at, std::uint32_t& next) {
  StepS const& step = plan_.steps[at];
  slots_[step.index] = pool_.slot(step.index);
  next = at + 1;
  if (plan_.steps[step.end].op != OP_TOTAL) return !watch_.hasFailed();
  TermT const from = operand(step, 0), to = operand(step, 1);
  if (!pool_.isNumber(from) || !pool_.isNumber(to)) return !watch_.hasFailed();
  RationalC const first = pool_.numberOf(from), last = pool_.numberOf(to);
  if (!first.isInteger() || !last.isInteger()) return watch_.fail(CAS_CAUSE_WRONG_ARGUMENT);
  if (!first.isSmall() || !last.isSmall()) return watch_.fail(CAS_CAUSE_TOO_LARGE);
  if (first.toSmall() > last.toSmall()) {
    values_[step.end] = TermPoolC::zero;
    next = step.end + 1;
    return true;
  }
  slots_[step.index] = from;
  loops_.push_back({at, first.toSmall(), last.toSmall(), 0, {}, pool_.size()});
  return true;
}

bool ExactC::endTotal(std::uint32_t at, std::uint32_t& next) {
  LoopS& loop = loops_.back();
  StepS const& step = plan_.steps[at];
  TermT const body = operand(step, 2);
  if (pool_.isNumber(body)) {
    loop.total = loop.total + pool_.numberOf(body);
    if (loop.total.isTooLong()) return watch_.fail(CAS_CAUSE_TOO_LARGE);
    // A sum of many numbers keeps none of them.
    if (loop.totals.empty()) pool_.release(loop.poolSize);
  } else {
    loop.totals.push_back(body);
  }
  if (loop.next++ < loop.last) {
    slots_[step.index] = pool_.number(loop.next);
    next = loop.begin + 1;
    return !watch_.hasFailed();
  }
  std::vector<SummandS> summands{{TermPoolC::one, loop.total}};
  for (TermT total : loop.totals) summands.push_back({total, 1});
  loops_.pop_back();
  values_[at] = pool_.sum(std::move(summands));
  next = at + 1;
  return !watch_.hasFailed();
}

TermT ExactC::leave(StepS const& step) {
  openPart_ = step.part;
  return pool_.function(step.op, {operand(step, 0), operand(step, 1), operand(step, 2), slots_[step.index]});
}

bool ExactC::isWithin(ReachE reach, TermT bound) {
  if (reach == REACH_EVERYWHERE || reach == REACH_UNKNOWN) return reach == REACH_EVERYWHERE;
  int const sign = findSign(pool_, bound);
  return sign == 1 || (sign == 0 && reach == REACH_FROM_ZERO);
}

// With the value that the variable has outside put in.
TermT ExactC::findAntiderivative(StepS const& step) {
  TermT antiderivative = TermPoolC::zero;
  ReachE reach = REACH_UNKNOWN;
  TermT const slot = slots_[step.index];
  if (integrateTerm(pool_, operand(step, 1), slot, &antiderivative, &reach)) {
    return substitute(pool_, antiderivative, slot, operand(step, 0));
  }
  watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA);
  return TermPoolC::zero;
}

TermT ExactC::integrate(StepS const& step) {
  TermT const lower = operand(step, 0), upper = operand(step, 1);
  TermT const slot = slots_[step.index];
  TermT antiderivative = TermPoolC::zero;
  if (isInfinite(lower) || isInfinite(upper)) return leave(step);
  ReachE reach = REACH_UNKNOWN;
  bool const isKnown = integrateTerm(pool_, operand(step, 2), slot, &antiderivative, &reach);
  if (watch_.hasFailed()) return TermPoolC::zero;
  if (!isKnown || !isWithin(reach, lower) || !isWithin(reach, upper)) return leave(step);
  // One after the other: terms are sorted by when they were made.
  TermT const atUpper = substitute(pool_, antiderivative, slot, upper);
  TermT const atLower = substitute(pool_, antiderivative, slot, lower);
  return pool_.subtract(atUpper, atLower);
}

}  // namespace zolt::engine_basic::detail
