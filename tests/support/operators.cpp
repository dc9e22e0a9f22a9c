#include "tests/support/operators.h"

#include "zolt/algexpr/cas_session.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::tests {

math::ved::OperatorListC& standardOperators() {
  static math::ved::OperatorListC& operators = []() -> math::ved::OperatorListC& {
    auto const& engine = math::algexpr::CASSessionBC::getSession()->getEngine();
    auto const list = math::ved::OperatorListRepositoryC::lookup(engine);
    catalogue::registerStandardOperators(*list);
    return *list;
  }();
  return operators;
}

}  // namespace zolt::tests
