#pragma once

#include <memory>
#include <string>

#include "zolt/algexpr/cas_engine.h"

namespace zolt::engine_giac {

/// The algebra system in a process of its own, which neither crashes nor hangs this one: a worker that is
/// started when there is something to compute, and is ended at a request's deadline, when it is told to stop,
/// and when it does not answer; the next request starts another one. Nothing is kept in it: a request brings
/// the definitions that it needs. Any number of threads may ask one engine; each has a worker meanwhile.
///
/// Numbers that have no exact value come from `zolt::engine_basic`, with the digits that are certain.
class GiacEngineC : public math::algexpr::CASEngineABC {
 public:
  /// `worker` is the path of the worker's program; empty: that of `findWorker`.
  explicit GiacEngineC(std::string worker = {});
  ~GiacEngineC() override;

  oss::wstring getName() const override { return u"giac"; }
  unsigned getCapabilities() const override;
  math::algexpr::CASResultS compute(math::algexpr::CASRequestS const& request,
                                    math::algexpr::CASStopC const* stop = nullptr) const override;

  /// The program of the worker: what the environment's ZOLT_GIAC_WORKER names, else one beside this program,
  /// in
  /// "../libexec/zolt" from there, or where it was built or installed. Empty when there is none.
  static std::string findWorker();

 private:
  struct SharedS;

  std::unique_ptr<SharedS> shared_;
};

}  // namespace zolt::engine_giac
