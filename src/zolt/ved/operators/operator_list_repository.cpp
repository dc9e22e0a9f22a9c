#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::math::ved {

OperatorListRepositoryC* OperatorListRepositoryC::instance_cls = nullptr;

OperatorListRepositoryC::OperatorListRepositoryC() : list_(new OperatorListC) {}
OperatorListRepositoryC::~OperatorListRepositoryC() = default;

PointerTC<OperatorListC> OperatorListRepositoryC::lookup(algexpr::CASEngineABC const&) {
  // Whichever thread comes first makes it.
  static OperatorListRepositoryC const& repository = *(instance_cls = new OperatorListRepositoryC);
  return repository.list_;
}

bool OperatorListRepositoryC::isSign(char16_t c) { return instance_cls && instance_cls->list_->isSign(c); }

void OperatorListRepositoryC::remove(algexpr::CASEngineABC const&) {}

}  // namespace zolt::math::ved
