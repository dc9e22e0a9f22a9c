#include "zolt/engines/basic/real_function.h"

#include <cmath>
#include <utility>

#include "zolt/engines/basic/detail/numeric.h"

namespace zolt::engine_basic {

using namespace math::algexpr;
using namespace detail;

struct RealFunctionC::StateS {
  StateS(CASAngleE unit, std::chrono::milliseconds deadline, PointerTC<CASStopC> stopper)
      : stop(std::move(stopper)), watch(deadline, stop.get()), angle(unit) {}

  bool run(BallS x, BallS* y) {
    if (!isValid || isOver) return false;
    numeric->setNames(x);
    bool const isDone = numeric->run(plan.result, *y);
    if (isDone) return std::isfinite(y->middle) && std::isfinite(y->error);
    isOver = watch.isOver();
    watch.takeFault();
    return false;
  }

  PointerTC<CASStopC> stop;
  WatchC watch;
  CASAngleE angle;
  PlanS plan;
  std::unique_ptr<NumericC> numeric;
  bool isValid = false;
  bool isOver = false;
};

RealFunctionC::RealFunctionC(AlgebraicExpressionC const& expression, oss::wstring const& variable,
                             PointerTC<CASDefinitionsC> definitions, CASAngleE angle,
                             std::chrono::milliseconds deadline, PointerTC<CASStopC> stop)
    : state_(std::make_unique<StateS>(angle, deadline, std::move(stop))) {
  StateS& state = *state_;
  PointerTC<NodeABC> const node = expression.getNode();
  if (definitions) definitions = definitions->without(variable);
  if (!node || !makePlan(*node, definitions.get(), state.watch, state.plan)) return;
  bool isOpen = state.plan.needsTerms || state.plan.steps[state.plan.result].type == TYPE_TRUTH;
  for (wstring const& name : state.plan.names) isOpen = isOpen || name != variable;
  if (isOpen) return;
  state.numeric = std::make_unique<NumericC>(state.plan, angle, state.watch);
  state.isValid = true;
}

RealFunctionC::~RealFunctionC() = default;

bool RealFunctionC::isValid() const { return state_->isValid; }

bool RealFunctionC::isOver() const { return state_->isOver; }

bool RealFunctionC::evaluate(double x, double* y) {
  BallS value;
  if (!state_->run({x, 0}, &value)) return false;
  // Of a value whose digits have all been lost nothing is known.
  constexpr double least_certain = 1e-9;
  if (value.error > 0.1 * std::fabs(value.middle) && value.error > least_certain) return false;
  *y = value.middle;
  return true;
}

bool RealFunctionC::isSmooth(double from, double to) {
  BallS value;
  return state_->run({0.5 * (from + to), 0.51 * std::fabs(to - from)}, &value);
}

}  // namespace zolt::engine_basic
