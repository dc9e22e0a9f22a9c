#pragma once

#include "zolt/algexpr/cas_engine.h"

namespace zolt::math::algexpr {

/// Ties expressions to an engine. One session is current in the process, on all threads; a host that has an
/// engine sets its own. A session shared by threads needs an engine that answers on all of them.
class CASSessionBC : public oss::RefCountedBC {
 public:
  /// A session with the standard engine.
  CASSessionBC();
  /// A null `engine` means the standard one.
  explicit CASSessionBC(PointerTC<CASEngineABC> engine);

  /// The current session, never null: until one is set, a default session with the standard engine.
  [[nodiscard]] static PointerTC<CASSessionBC> getSession();
  /// Null brings the default session back.
  static void setSession(PointerTC<CASSessionBC> session);

  CASEngineABC const& getEngine() const { return *engine_; }

 private:
  PointerTC<CASEngineABC> engine_;
};

}  // namespace zolt::math::algexpr
