#pragma once

#include "zolt/algexpr/cas_engine.h"

namespace zolt::math::algexpr {

class CASDefinitionsC;

/// Ties expressions to an engine. One session is current in the process, on all threads; a host that has an
/// engine sets its own. A session shared by threads needs an engine that answers on all of them.
///
/// A session keeps what its expressions have defined. Definitions are used by one thread at a time.
class CASSessionBC : public oss::RefCountedBC {
 public:
  /// A session with the standard engine.
  CASSessionBC();
  /// A null `engine` means the standard one.
  explicit CASSessionBC(PointerTC<CASEngineABC> engine);
  ~CASSessionBC() override;

  /// The current session, never null: until one is set, a default session with the standard engine.
  [[nodiscard]] static PointerTC<CASSessionBC> getSession();
  /// Null brings the default session back.
  static void setSession(PointerTC<CASSessionBC> session);

  CASEngineABC const& getEngine() const { return *engine_; }

  /// What has been defined, never null. A request that takes it sees later definitions no more.
  PointerTC<CASDefinitionsC> getDefinitions() const;
  /// Null forgets all.
  void setDefinitions(PointerTC<CASDefinitionsC> definitions);
  /// Has the engine compute with the session's definitions, and keeps what an assignment defines.
  CASResultS compute(CASRequestS request);

 private:
  PointerTC<CASEngineABC> engine_;
  PointerTC<CASDefinitionsC> definitions_;
};

}  // namespace zolt::math::algexpr
