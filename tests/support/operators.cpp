#include "tests/support/operators.h"

#include "zolt/algexpr/cas_session.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/operators/operator.h"
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

std::vector<std::pair<oss::wstring, oss::wstring>> everyNesting() {
  std::vector<std::pair<oss::wstring, oss::wstring>> nestings;
  for (auto const& [name, op] : standardOperators().crefByName()) {
    unsigned long const arity = op->getArity() > 0 ? op->getArity() : 2;
    for (unsigned long place = 0; place < arity; ++place) {
      if (!op->hasOwnRow(place)) continue;
      oss::wstring before = name + u"(";
      oss::wstring after = u")";
      for (unsigned long i = 0; i < place; ++i) before += u"a,";
      for (unsigned long i = place + 1; i < arity; ++i) after.insert(0, u",b");
      nestings.emplace_back(before, after);
    }
  }
  return nestings;
}

}  // namespace zolt::tests
