#include "zolt/algexpr/cas_session.h"

#include <utility>

namespace zolt::math::algexpr {

namespace {

PointerTC<CASSessionBC>& currentSession() {
  static PointerTC<CASSessionBC> session = new CASSessionBC;
  return session;
}

}  // namespace

CASSessionBC::CASSessionBC() : CASSessionBC(nullptr) {}

CASSessionBC::CASSessionBC(PointerTC<CASEngineABC> engine) : engine_(std::move(engine)) {
  if (!engine_) engine_ = new StandardEngineC;
}

PointerTC<CASSessionBC> CASSessionBC::getSession() { return currentSession(); }

void CASSessionBC::setSession(PointerTC<CASSessionBC> session) {
  if (!session) session = new CASSessionBC;
  currentSession() = std::move(session);
}

}  // namespace zolt::math::algexpr
