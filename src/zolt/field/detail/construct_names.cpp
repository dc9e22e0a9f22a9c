#include "zolt/field/detail/construct_names.h"

#include "zolt/common/signs.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::field::detail {

namespace {

struct AliasS {
  char16_t const* name;
  char16_t const* operatorName;
  char16_t const* mark;
};

constexpr AliasS aliases[] = {{u"int", u"integral", u""},
                              {u"integrate", u"integral", u""},
                              {u"root", u"nthroot", u""},
                              {u"cbrt", u"nthroot", u"3"},
                              {u"ceiling", u"ceil", u""}};

PointerTC<OperatorBC> findByName(OperatorListC const& operators, wstring const& name) {
  auto op = operators.lookup(name);
  return op && op->isConstruct() && op->getArity() > 0 && isWrittenAsCall(*op) ? op : nullptr;
}

bool isPlainFunction(OperatorListC const& operators, wstring const& name) {
  auto const op = operators.lookupText(name);
  return op && !op->isConstruct();
}

}  // namespace

ConstructNameS findConstruct(OperatorListC const& operators, wstring const& name) {
  for (AliasS const& alias : aliases) {
    if (name == alias.name) return {findByName(operators, alias.operatorName), alias.mark};
  }
  std::size_t const underscore = name.find(u'_');
  if (underscore != wstring::npos && underscore + 1 < name.size()) {
    auto op = findByName(operators, name.substr(0, underscore));
    if (!op || op->getArity() != 2) return {};
    return {op, name.substr(underscore + 1)};
  }
  if (isPlainFunction(operators, name)) return {};
  return {findByName(operators, name), wstring()};
}

PointerTC<OperatorBC> findConstructOfPair(OperatorListC const& operators, wstring const& name) {
  if (!isPlainFunction(operators, name)) return nullptr;
  auto op = findByName(operators, name);
  return op && op->getArity() == 2 ? op : nullptr;
}

bool isWrittenAsCall(OperatorBC const& op) {
  wstring const name = op.getName();
  return !name.empty() && isWordCharacter(name[0]) && !math::common::isDigit(name[0]);
}

std::vector<unsigned long> argumentRows(OperatorBC const& op) {
  // Each row's text is its own index, as a character.
  std::vector<wstring> rows;
  for (unsigned long i = 0; i < op.getArity(); ++i) rows.emplace_back(1, static_cast<char16_t>(u'0' + i));
  std::vector<unsigned long> order;
  for (char16_t const c : op.arrangeArgumentList(rows)) {
    if (c != u',') order.push_back(static_cast<unsigned long>(c - u'0'));
  }
  return order;
}

}  // namespace zolt::field::detail
