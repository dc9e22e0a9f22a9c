#include "zolt/engines/queue/engine_queue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace zolt::engine_queue {

using namespace math::algexpr;

struct EngineQueueC::SharedS {
  struct JobS {
    TicketT ticket = 0;
    CASRequestS request;
    TakeT take;
    oss::PointerTC<CASStopC> stop;
    CASResultS result = {};
  };

  // Jobs go from `waiting` to `running` to `done`; one that is cancelled has no `take`, and is dropped at the
  // next step.
  void run() {
    std::unique_lock<std::mutex> locked(lock);
    for (;;) {
      changed.wait(locked, [this] { return isEnding || !waiting.empty(); });
      if (isEnding) return;
      running = std::move(waiting.front());
      waiting.pop_front();
      CASRequestS const request = running.request;
      oss::PointerTC<CASStopC> const stop = running.stop;
      isRunning = true;
      locked.unlock();
      CASResultS result = engine->compute(request, stop.get());
      locked.lock();
      isRunning = false;
      running.result = std::move(result);
      bool const isWanted = running.take != nullptr;
      if (isWanted) done.push_back(std::move(running));
      running = {};
      if (!isWanted || !wake) continue;
      locked.unlock();
      wake();
      locked.lock();
    }
  }

  void drop(TicketT ticket) {
    auto const isIt = [ticket](JobS const& job) { return job.ticket == ticket; };
    waiting.erase(std::remove_if(waiting.begin(), waiting.end(), isIt), waiting.end());
    done.erase(std::remove_if(done.begin(), done.end(), isIt), done.end());
    if (!isRunning || running.ticket != ticket) return;
    running.take = nullptr;
    running.stop->stop();
  }

  oss::PointerTC<CASEngineABC> engine;
  std::function<void()> wake;
  std::mutex lock;
  std::condition_variable changed;
  std::deque<JobS> waiting;
  JobS running;
  std::deque<JobS> done;
  bool isRunning = false;
  bool isEnding = false;
  TicketT last = 0;
  std::thread thread;
};

EngineQueueC::EngineQueueC(oss::PointerTC<CASEngineABC> engine, std::function<void()> wake)
    : shared_(std::make_unique<SharedS>()) {
  shared_->engine = std::move(engine);
  shared_->wake = std::move(wake);
  shared_->thread = std::thread([shared = shared_.get()] { shared->run(); });
}

EngineQueueC::~EngineQueueC() {
  cancelAll();
  {
    std::lock_guard<std::mutex> const locked(shared_->lock);
    shared_->isEnding = true;
  }
  shared_->changed.notify_all();
  shared_->thread.join();
}

EngineQueueC::TicketT EngineQueueC::submit(CASRequestS request, TakeT take) {
  TicketT ticket = 0;
  {
    std::lock_guard<std::mutex> const locked(shared_->lock);
    ticket = ++shared_->last;
    shared_->waiting.push_back({ticket, std::move(request), std::move(take), new CASStopC});
  }
  shared_->changed.notify_all();
  return ticket;
}

void EngineQueueC::cancel(TicketT ticket) {
  std::lock_guard<std::mutex> const locked(shared_->lock);
  shared_->drop(ticket);
}

void EngineQueueC::cancelAll() {
  std::lock_guard<std::mutex> const locked(shared_->lock);
  shared_->waiting.clear();
  shared_->done.clear();
  if (shared_->isRunning) shared_->drop(shared_->running.ticket);
}

std::size_t EngineQueueC::poll() {
  for (;;) {
    SharedS::JobS job;
    {
      std::lock_guard<std::mutex> const locked(shared_->lock);
      if (shared_->done.empty()) break;
      job = std::move(shared_->done.front());
      shared_->done.pop_front();
    }
    job.take(job.result);
  }
  return numWaiting();
}

std::size_t EngineQueueC::numWaiting() const {
  std::lock_guard<std::mutex> const locked(shared_->lock);
  std::size_t const running = shared_->isRunning && shared_->running.take ? 1 : 0;
  return shared_->waiting.size() + running + shared_->done.size();
}

}  // namespace zolt::engine_queue
