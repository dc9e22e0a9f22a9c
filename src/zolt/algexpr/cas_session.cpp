#include "zolt/algexpr/cas_session.h"

#include <mutex>
#include <utility>

#include "zolt/algexpr/cas_request.h"

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
  definitions_ = new CASDefinitionsC;
}

CASSessionBC::~CASSessionBC() = default;

PointerTC<CASDefinitionsC> CASSessionBC::getDefinitions() const { return definitions_; }

void CASSessionBC::setDefinitions(PointerTC<CASDefinitionsC> definitions) {
  definitions_ = definitions ? std::move(definitions) : PointerTC<CASDefinitionsC>(new CASDefinitionsC);
}

CASResultS CASSessionBC::compute(CASRequestS request) {
  request.definitions = definitions_;
  CASResultS result = engine_->compute(request);
  if (!result.definition.name.empty()) definitions_ = definitions_->with(result.definition);
  return result;
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
