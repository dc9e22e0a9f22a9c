#pragma once

#include "zolt/engines/basic/detail/ball.h"
#include "zolt/engines/basic/detail/plan.h"

namespace zolt::engine_basic::detail {

/// Runs plans on doubles whose errors are known.
class NumericC {
 public:
  /// How deep integrals may nest: each takes hundreds of values of the one inside it.
  static constexpr unsigned max_nested_integrals = 4;

  NumericC(PlanS const& plan, CASAngleE angle, WatchC& watch);

  /// What all names without a value stand for from now on.
  void setNames(BallS value) {
    names_ = value;
    hasNames_ = true;
  }
  /// The value of the last step, or of the step `result`; of a truth value, 1 or 0. False, with the watch's
  /// fault, when there is none.
  [[nodiscard]] bool run(std::uint32_t result, BallS& value);

 private:
  struct LoopS {
    std::uint32_t begin;
    BallS next;
    BallS last;
    BallS total;
  };

  BallS const& operand(StepS const& step, std::uint32_t i) const {
    return values_[plan_.operand(step, i).step];
  }
  bool runSteps(std::uint32_t begin, std::uint32_t end);
  bool runStep(StepS const& step, BallS& result);
  bool check(DefinedE defined, StepS const& step);
  bool runSum(StepS const& step, BallS& result);
  bool runProduct(StepS const& step, BallS& result);
  bool compare(StepS const& step, BallS& result);
  bool decide(StepS const& step, BallS& result);
  BallS toRadians(BallS angle) const;
  BallS fromRadians(BallS angle) const;
  bool beginLoop(std::uint32_t at, std::vector<LoopS>& loops, std::uint32_t& next);
  bool integrate(std::uint32_t begin);

  PlanS const& plan_;
  CASAngleE angle_;
  WatchC& watch_;
  std::vector<BallS> values_;
  std::vector<BallS> numbers_;
  std::vector<BallS> slots_;
  BallS names_;
  bool hasNames_ = false;
  unsigned integrals_ = 0;
};

/// The ball of an exact number.
BallS toBall(RationalC const& number);

}  // namespace zolt::engine_basic::detail
