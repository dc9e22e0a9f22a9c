#pragma once

#include <chrono>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_basic::detail {

using namespace math::algexpr;

/// Why an evaluation ended without a value, and at which part of the request's expression.
struct FaultS {
  CASCauseE cause = CAS_CAUSE_NONE;
  unsigned long part = CASResultS::no_part;
  wstring subject = {};
};

/// Ends loops at the deadline and when somebody says stop, keeps the first fault of a computation, and says
/// which part is under way.
class WatchC {
 public:
  WatchC(std::chrono::milliseconds deadline, CASStopC const* stop)
      : end_(std::chrono::steady_clock::now() + deadline), stop_(stop) {}

  /// False when there is a fault, the time is up or a stop was asked for. Looks at the clock once in a while,
  /// so that a loop can ask after every step; `cost` is how many steps were made.
  [[nodiscard]] bool goOn(unsigned cost = 1) {
    if (cost < left_) {
      left_ -= cost;
      return fault_.cause == CAS_CAUSE_NONE;
    }
    left_ = interval;
    if (stop_ && stop_->isStopped()) return fail(CAS_CAUSE_STOPPED);
    if (std::chrono::steady_clock::now() >= end_) return fail(CAS_CAUSE_DEADLINE);
    return fault_.cause == CAS_CAUSE_NONE;
  }

  /// Keeps the fault unless there is one. Answers false.
  bool fail(CASCauseE cause) { return fail(cause, part_, {}); }
  bool fail(CASCauseE cause, unsigned long part, wstring subject) {
    if (fault_.cause == CAS_CAUSE_NONE) fault_ = {cause, part, std::move(subject)};
    return false;
  }
  bool hasFailed() const { return fault_.cause != CAS_CAUSE_NONE; }
  FaultS const& crefFault() const { return fault_; }
  /// Begins anew after a fault that another way may avoid; the end stays.
  FaultS takeFault() { return std::exchange(fault_, {}); }
  /// Whether the fault ends everything.
  bool isOver() const { return fault_.cause == CAS_CAUSE_DEADLINE || fault_.cause == CAS_CAUSE_STOPPED; }

  void setPart(unsigned long part) { part_ = part; }
  unsigned long getPart() const { return part_; }

 private:
  static constexpr unsigned interval = 2000;

  std::chrono::steady_clock::time_point const end_;
  CASStopC const* const stop_;
  unsigned left_ = 1;
  unsigned long part_ = CASResultS::no_part;
  FaultS fault_;
};

}  // namespace zolt::engine_basic::detail
