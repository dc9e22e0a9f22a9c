#pragma once

#include "zolt/engines/basic/detail/term_integral.h"
#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

/// Runs plans on terms, without rounding anything.
class ExactC {
 public:
  ExactC(PlanS const& plan, TermPoolC& pool);

  /// The value of the plan as a term. Sums and integrals that have no exact value here are left as they are.
  /// False, with the watch's fault, when there is none.
  [[nodiscard]] bool run(TermT* value);
  /// The part at which such a sum or integral was left last.
  unsigned long getOpenPart() const { return openPart_; }

 private:
  struct LoopS {
    std::uint32_t begin;
    std::int64_t next;
    std::int64_t last;
    RationalC total = 0;        // of the numbers
    std::vector<TermT> totals;  // of other terms
    std::size_t poolSize;       // where terms can be forgotten again
  };

  TermT operand(StepS const& step, std::uint32_t i) const { return values_[plan_.operand(step, i).step]; }
  TermT runStep(StepS const& step);
  TermT runSum(StepS const& step);
  TermT runProduct(StepS const& step);
  bool isInfinite(TermT term) const;
  bool begin(std::uint32_t at, std::uint32_t& next);
  bool endTotal(std::uint32_t at, std::uint32_t& next);
  TermT integrate(StepS const& step);
  TermT findAntiderivative(StepS const& step);
  bool isWithin(ReachE reach, TermT bound);
  TermT leave(StepS const& step);

  PlanS const& plan_;
  TermPoolC& pool_;
  WatchC& watch_;
  std::vector<TermT> values_;
  std::vector<TermT> slots_;
  std::vector<LoopS> loops_;
  unsigned long openPart_ = CASResultS::no_part;
};

}  // namespace zolt::engine_basic::detail
