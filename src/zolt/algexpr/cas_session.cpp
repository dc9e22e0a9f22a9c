#include "zolt/algexpr/cas_session.h"

#include <mutex>
#include <utility>

namespace zolt::math::algexpr {

namespace {

// Never destroyed: static objects may still convert formulas.
struct CurrentS {
  std::mutex lock;
  PointerTC<CASSessionBC> session = new CASSessionBC;
};

CurrentS& current() {
  static auto& current = *new CurrentS;
  return current;
}

}  // namespace

CASSessionBC::CASSessionBC() : CASSessionBC(nullptr) {}

CASSessionBC::CASSessionBC(PointerTC<CASEngineABC> engine) : engine_(std::move(engine)) {
  if (!engine_) engine_ = new StandardEngineC;
}

PointerTC<CASSessionBC> CASSessionBC::getSession() {
  std::lock_guard<std::mutex> const locked(current().lock);
  return current().session;
}

void CASSessionBC::setSession(PointerTC<CASSessionBC> session) {
  if (!session) session = new CASSessionBC;
  std::lock_guard<std::mutex> const locked(current().lock);
  current().session.swap(session);
}

}  // namespace zolt::math::algexpr
