#pragma once

#include <functional>
#include <memory>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_queue {

/// Has an engine compute on a thread of its own, one request after the other, for a program with one thread
/// for its user interface. All members are called on that one thread, and results are delivered on it, by
/// `poll`: from a timer, or whenever `wake` has been called.
class EngineQueueC {
 public:
  using TicketT = unsigned long;
  using TakeT = std::function<void(math::algexpr::CASResultS const& result)>;

  /// Keeps the engine, which is not null. `wake` is called on the engine's thread after each result, to post
  /// an event that leads to `poll`; it may be empty.
  explicit EngineQueueC(oss::PointerTC<math::algexpr::CASEngineABC> engine, std::function<void()> wake = {});
  /// Cancels everything, and waits for the computation under way, which ends soon.
  ~EngineQueueC();
  EngineQueueC(EngineQueueC const&) = delete;
  EngineQueueC& operator=(EngineQueueC const&) = delete;

  /// Queues a request. `take` is called once by a later `poll`, unless it is cancelled.
  TicketT submit(math::algexpr::CASRequestS request, TakeT take);
  /// The request is not computed, or its computation ends soon; its result is not delivered.
  void cancel(TicketT ticket);
  void cancelAll();
  /// Delivers the results that are there; they may submit and cancel. Returns how many requests are left.
  std::size_t poll();
  /// How many requests have not been delivered or cancelled.
  std::size_t numWaiting() const;

 private:
  struct SharedS;

  std::unique_ptr<SharedS> shared_;
};

}  // namespace zolt::engine_queue
