#include "tests/support/operators.h"

#include <cstdlib>

#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::tests {

math::ved::OperatorListC& standardOperators() {
  static math::ved::OperatorListC& operators = []() -> math::ved::OperatorListC& {
    auto const& engine = math::algexpr::CASSessionBC::getSession()->getEngine();
    auto const list = math::ved::OperatorListRepositoryC::lookup(engine);
    catalogue::registerStandardOperators(*list);
    if (std::getenv("ZOLT_TEST_EXTENDED")) catalogue_extended::registerExtendedOperators(*list);
    return *list;
  }();
  return operators;
}

std::vector<math::ved::OperatorBC const*> operatorsOfExpressions() {
  std::vector<math::ved::OperatorBC const*> found;
  for (auto const& [name, op] : standardOperators().crefByName()) {
    bool const isInserted = name[0] != u'_' || op->getPlace() != math::ved::OPERATOR_BY_NAME;
    if (isInserted || op->isCoreElement()) found.push_back(&*op);
  }
  return found;
}

oss::PointerTC<math::algexpr::NodeABC> makeSample(math::ved::OperatorBC const& op) {
  using math::algexpr::makeFunction;
  using math::algexpr::makeNamed;
  oss::wstring const name = op.getName();
  unsigned long const arity = op.isConstruct() && op.getArity() == 0 ? 2 : op.getArity();
  if (arity == 0) return makeNamed(name);
  std::vector<oss::PointerTC<math::algexpr::NodeABC>> operands;
  for (unsigned long i = 0; i < arity; ++i)
    operands.push_back(makeNamed(oss::wstring(1, u'a' + char16_t(i))));
  if (op.getColumns() > 0) {
    operands = {makeFunction(u"list", operands), makeFunction(u"list", operands)};
  } else if (name == u"interval") {
    operands.resize(4, math::algexpr::makeNumber(u"1"));
  }
  return makeFunction(name, std::move(operands));
}

std::vector<std::pair<oss::wstring, oss::wstring>> everyNesting() {
  std::vector<std::pair<oss::wstring, oss::wstring>> nestings;
  for (auto const& [name, op] : standardOperators().crefByName()) {
    unsigned long const arity = op->getArity() > 0 ? op->getArity() : 2;
    for (unsigned long place = 0; place < arity; ++place) {
      if (!op->hasOwnRow(place)) continue;
      std::vector<oss::wstring> rows(arity, u"a");
      rows[place] = u"\xE000";
      oss::wstring const call = name + u'(' + op->arrangeArgumentList(rows) + u')';
      std::size_t const inside = call.find(u'\xE000');
      nestings.emplace_back(call.substr(0, inside), call.substr(inside + 1));
    }
  }
  return nestings;
}

}  // namespace zolt::tests
