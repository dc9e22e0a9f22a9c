#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zolt::cli {

/// Does pieces of work on several threads, and finishes them on the caller's in the order in which they were
/// added. An exception of a piece is thrown on when it would be finished.
class OrderedWorkC {
 public:
  /// With one thread that is the caller's, and every piece is done and finished when it is added.
  explicit OrderedWorkC(unsigned threads);
  /// Waits for pieces under way; others are given up.
  ~OrderedWorkC();
  OrderedWorkC(OrderedWorkC const&) = delete;
  OrderedWorkC& operator=(OrderedWorkC const&) = delete;

  /// Has `work` called with the number of a thread, from 0, and then `finish`. May finish earlier pieces.
  void add(std::function<void(unsigned)> work, std::function<void()> finish);
  /// Finishes all that was added.
  void drain();

 private:
  struct PieceS {
    std::function<void(unsigned)> work;
    std::function<void()> finish;
    bool isDone = false;
    std::exception_ptr failure;
  };

  void runThread(unsigned number);
  void finishFirst();

  std::vector<std::thread> threads_;
  std::deque<std::shared_ptr<PieceS>> pieces_;   // in order, the caller's
  std::deque<std::shared_ptr<PieceS>> waiting_;  // this and what follows is guarded by the mutex
  bool isOver_ = false;
  std::mutex mutex_;
  std::condition_variable hasWork_, isDone_;
};

}  // namespace zolt::cli
