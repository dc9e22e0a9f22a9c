#include "zolt/engines/basic/detail/term_plan.h"

#include "zolt/engines/basic/detail/numeric.h"

namespace zolt::engine_basic::detail {

namespace {

class PlannerC {
 public:
  PlannerC(TermPoolC const& pool, WatchC& watch, PlanS& plan) : pool_(pool), watch_(watch), plan_(plan) {
    part_ = watch.getPart();
  }

  bool run(TermT top, std::uint32_t* result) {
    constexpr unsigned deepest = 64;
    if (depth_ == deepest) return watch_.fail(CAS_CAUSE_TOO_LARGE);
    ++depth_;
    std::vector<bool> isPart(top + std::size_t{1});
    isPart[top] = true;
    std::vector<TermT> parts;
    for (TermT term = top + 1; term-- > 0;) {
      if (!isPart[term]) continue;
      parts.push_back(term);
      TermS const& record = pool_.cref(term);
      unsigned rest = isLoop(record) ? 2 : ~0U;  // the body has steps of its own
      pool_.forEachPart(term, [&](TermT part) {
        if (rest > 0) isPart[part] = true;
        if (rest > 0) --rest;
      });
    }
    std::unordered_map<TermT, std::uint32_t> steps;
    for (std::size_t i = parts.size(); i > 0; --i) {
      if (!watch_.goOn() || !add(parts[i - 1], steps)) return false;
    }
    *result = steps[top];
    --depth_;
    return true;
  }

 private:
  using StepsT = std::unordered_map<TermT, std::uint32_t>;

  static bool isLoop(TermS const& term) { return term.op == OP_TOTAL || term.op == OP_INTEGRAL; }

  std::uint32_t addStep(StepS step) {
    step.part = part_;
    plan_.steps.push_back(step);
    return static_cast<std::uint32_t>(plan_.steps.size() - 1);
  }
  std::uint32_t addStep(OpE op, std::vector<OperandS> const& operands) {
    StepS step;
    step.op = op;
    step.first = static_cast<std::uint32_t>(plan_.operands.size());
    step.count = static_cast<std::uint32_t>(operands.size());
    plan_.operands.insert(plan_.operands.end(), operands.begin(), operands.end());
    return addStep(step);
  }
  std::uint32_t addNumber(RationalC number) {
    StepS step;
    step.index = static_cast<std::uint32_t>(plan_.numbers.size());
    plan_.numbers.push_back(std::move(number));
    return addStep(step);
  }
  OperandS operandOf(std::uint32_t step, bool isFlagged) const { return {step, isFlagged, part_}; }

  bool add(TermT term, StepsT& steps) {
    TermS const& record = pool_.cref(term);
    StepS leaf;
    switch (record.kind) {
      case TERM_NUMBER:
        steps[term] = addNumber(record.number);
        return true;
      case TERM_NAME:
        leaf.op = OP_NAME;
        leaf.index = static_cast<std::uint32_t>(plan_.names.size());
        plan_.names.push_back(pool_.crefName(term));
        steps[term] = addStep(leaf);
        return true;
      case TERM_SLOT:
        leaf.op = OP_SLOT;
        leaf.index = record.index;
        if (plan_.slots.size() <= record.index) plan_.slots.resize(record.index + std::size_t{1});
        steps[term] = addStep(leaf);
        return true;
      case TERM_SUM:
        addSum(term, steps);
        return true;
      case TERM_PRODUCT:
        addProduct(term, steps);
        return true;
      case TERM_FUNCTION:
        return addFunction(term, steps);
    }
    return false;
  }

  void addSum(TermT term, StepsT& steps) {
    std::vector<OperandS> operands;
    for (SummandS const& summand : pool_.cref(term).summands) {
      RationalC const factor = summand.factor.abs();
      std::uint32_t value = steps[summand.term];
      if (summand.term == TermPoolC::one) {
        value = addNumber(factor);
      } else if (!factor.isOne()) {
        value = addStep(OP_PRODUCT, {operandOf(addNumber(factor), false), operandOf(value, false)});
      }
      operands.push_back(operandOf(value, summand.factor.sign() < 0));
    }
    steps[term] = addStep(OP_SUM, operands);
  }

  void addProduct(TermT term, StepsT& steps) {
    std::vector<OperandS> operands;
    for (FactorS const& factor : pool_.cref(term).factors) {
      std::uint32_t value = steps[factor.base];
      bool const isNumeric = pool_.isNumber(factor.exponent);
      RationalC const exponent = isNumeric ? pool_.numberOf(factor.exponent).abs() : RationalC(1);
      if (!isNumeric) {
        value = addStep(OP_POWER, {operandOf(value, false), operandOf(steps[factor.exponent], false)});
      } else if (exponent == RationalC(1, 2)) {
        value = addStep(OP_SQRT, {operandOf(value, false)});
      } else if (!exponent.isOne()) {
        value = addStep(OP_POWER, {operandOf(value, false), operandOf(addNumber(exponent), false)});
      }
      operands.push_back(operandOf(value, isNumeric && pool_.numberOf(factor.exponent).sign() < 0));
    }
    steps[term] = addStep(OP_PRODUCT, operands);
  }

  bool addFunction(TermT term, StepsT& steps) {
    TermS const& record = pool_.cref(term);
    std::vector<OperandS> operands;
    if (!isLoop(record)) {
      for (TermT argument : record.arguments) operands.push_back(operandOf(steps[argument], false));
      plan_.hasInfinity |= record.op == OP_INFINITY;
      std::uint32_t const step = addStep(record.op, operands);
      bool const isTruth = record.op == OP_TRUE || record.op == OP_FALSE || record.op >= OP_EQUAL;
      if (isTruth) plan_.steps[step].type = TYPE_TRUTH;
      steps[term] = step;
      return true;
    }
    for (std::size_t i = 0; i < 2; ++i) operands.push_back(operandOf(steps[record.arguments[i]], false));
    std::uint32_t const slot = pool_.cref(record.arguments[3]).index;
    if (plan_.slots.size() <= slot) plan_.slots.resize(slot + std::size_t{1});
    std::uint32_t const begin = addStep(OP_BEGIN, operands);
    std::uint32_t body = 0;
    if (!run(record.arguments[2], &body)) return false;
    operands.push_back(operandOf(body, false));
    std::uint32_t const end = addStep(record.op, operands);
    plan_.steps[begin].index = slot;
    plan_.steps[end].index = slot;
    plan_.steps[begin].end = end;
    plan_.steps[end].end = begin;
    steps[term] = end;
    return true;
  }

  TermPoolC const& pool_;
  WatchC& watch_;
  PlanS& plan_;
  unsigned long part_;
  unsigned depth_ = 0;
};

}  // namespace

bool makePlan(TermPoolC const& pool, TermT term, WatchC& watch, PlanS& plan) {
  std::uint32_t result = 0;
  return PlannerC(pool, watch, plan).run(term, &result);
}

bool findValue(TermPoolC& pool, TermT term, BallS* value) {
  WatchC& watch = pool.refWatch();
  if (watch.hasFailed() || pool.cref(term).hasNames) return false;
  PlanS plan;
  bool const isKnown =
      makePlan(pool, term, watch, plan) &&
      NumericC(plan, pool.getAngle(), watch).run(static_cast<std::uint32_t>(plan.steps.size() - 1), *value);
  if (!isKnown && !watch.isOver()) watch.takeFault();
  return isKnown;
}

int findSign(TermPoolC& pool, TermT term) {
  if (pool.isNumber(term)) return pool.numberOf(term).sign();
  BallS value;
  int sign = 0;
  bool const isKnown =
      findValue(pool, term, &value) && compareBalls(value, {}, &sign) && (sign != 0 || value.isExact());
  return isKnown ? sign : 2;
}

}  // namespace zolt::engine_basic::detail
