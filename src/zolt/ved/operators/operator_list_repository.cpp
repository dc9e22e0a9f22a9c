#include "zolt/ved/operators/operator_list_repository.h"

#include <new>

namespace zolt::math::ved {

OperatorListRepositoryC* OperatorListRepositoryC::instance_cls = nullptr;

OperatorListRepositoryC::OperatorListRepositoryC() = default;
OperatorListRepositoryC::~OperatorListRepositoryC() = default;

PointerTC<OperatorListC> OperatorListRepositoryC::lookup(algexpr::CASEngineABC const&) {
  if (!instance_cls) instance_cls = new (std::nothrow) OperatorListRepositoryC;
  if (!instance_cls) return nullptr;
  if (!instance_cls->list_) instance_cls->list_ = new OperatorListC;
  return instance_cls->list_;
}

void OperatorListRepositoryC::remove(algexpr::CASEngineABC const&) {}

}  // namespace zolt::math::ved
