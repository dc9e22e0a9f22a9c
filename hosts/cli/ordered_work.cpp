#include "hosts/cli/ordered_work.h"

#include <utility>

namespace zolt::cli {

namespace {

// So many pieces a thread may be ahead of the first one that is not finished: their results are in memory.
constexpr std::size_t most_ahead = 16;

}  // namespace

OrderedWorkC::OrderedWorkC(unsigned threads) {
  for (unsigned i = 0; threads > 1 && i < threads; ++i) threads_.emplace_back([this, i] { runThread(i); });
}

OrderedWorkC::~OrderedWorkC() {
  {
    std::lock_guard<std::mutex> const lock(mutex_);
    isOver_ = true;
  }
  hasWork_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void OrderedWorkC::add(std::function<void(unsigned)> work, std::function<void()> finish) {
  if (threads_.empty()) {
    work(0);
    finish();
    return;
  }
  auto const piece = std::make_shared<PieceS>();
  piece->work = std::move(work);
  piece->finish = std::move(finish);
  pieces_.push_back(piece);
  {
    std::lock_guard<std::mutex> const lock(mutex_);
    waiting_.push_back(piece);
  }
  hasWork_.notify_one();
  while (pieces_.size() > most_ahead * threads_.size()) finishFirst();
}

void OrderedWorkC::drain() {
  while (!pieces_.empty()) finishFirst();
}

void OrderedWorkC::finishFirst() {
  std::shared_ptr<PieceS> const piece = pieces_.front();
  pieces_.pop_front();
  {
    std::unique_lock<std::mutex> lock(mutex_);
    isDone_.wait(lock, [&] { return piece->isDone; });
  }
  if (piece->failure) std::rethrow_exception(piece->failure);
  piece->finish();
}

void OrderedWorkC::runThread(unsigned number) {
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    hasWork_.wait(lock, [this] { return isOver_ || !waiting_.empty(); });
    if (isOver_) return;
    std::shared_ptr<PieceS> const piece = waiting_.front();
    waiting_.pop_front();
    lock.unlock();
    try {
      piece->work(number);
    } catch (...) {
      piece->failure = std::current_exception();
    }
    lock.lock();
    piece->isDone = true;
    isDone_.notify_one();
  }
}

}  // namespace zolt::cli
