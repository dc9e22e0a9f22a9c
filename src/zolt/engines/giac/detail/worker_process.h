#pragma once

#include <chrono>
#include <string>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_giac::detail {

using oss::wstring;

/// A worker: a process that answers one message with another. It is started when it is first asked, and ended
/// when it does not answer as it should; the next question starts another one. Used by one thread at a time.
class WorkerProcessC {
 public:
  enum OutcomeE { ANSWERED, ENDED, LATE, STOPPED };
  using EndT = std::chrono::steady_clock::time_point;

  explicit WorkerProcessC(std::string path) : path_(std::move(path)) {}
  ~WorkerProcessC() { end(); }
  WorkerProcessC(WorkerProcessC const&) = delete;
  WorkerProcessC& operator=(WorkerProcessC const&) = delete;

  /// Sends the question and waits for its answer, until `last` at most, or until somebody says stop (null:
  /// nobody can). `ENDED`: there is no worker, or it has ended, or has sent more than an answer may have.
  OutcomeE ask(wstring const& question, EndT last, math::algexpr::CASStopC const* stop, wstring& answer);
  /// How many questions it has been asked since it was started.
  unsigned long numAsked() const { return asked_; }
  void end();

 private:
  enum DirectionE { TO_WORKER, FROM_WORKER };

  bool start();
  bool isAlive() const;
  OutcomeE move(DirectionE direction, void* bytes, std::size_t size, EndT last,
                math::algexpr::CASStopC const* stop);

  std::string path_;
  int socket_ = -1;
  int process_ = 0;
  unsigned long asked_ = 0;
};

}  // namespace zolt::engine_giac::detail
