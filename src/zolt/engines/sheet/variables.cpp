#include "zolt/engines/sheet/variables.h"

#include <algorithm>
#include <set>

#include "zolt/algexpr/nodes.h"
#include "zolt/common/signs.h"
#include "zolt/engines/sheet/detail/line_names.h"

namespace zolt::engine_sheet {

using namespace math::algexpr;

namespace {

/// Which argument of a construct is the variable that it binds; -1: none.
long findBound(NodeABC const& node, unsigned long count) {
  struct BinderS {
    char16_t const* name;
    unsigned long count;
    long variable;
  };
  static constexpr BinderS binders[] = {
      {u"integral", 4, 3}, {u"sum", 4, 0}, {u"product", 4, 0}, {u"where", 3, 1}, {u"limit", 3, 1}};
  for (BinderS const& binder : binders) {
    if (node.crefName() == binder.name && count == binder.count) return binder.variable;
  }
  return -1;
}

}  // namespace

bool isValueName(oss::wstring const& name) {
  return name == u"true" || name == u"false" || name == oss::wstring{math::common::infinity_sign};
}

std::vector<oss::wstring> findVariables(AlgebraicExpressionC const& expression) {
  PointerTC<NodeABC> root = expression.getNode();
  if (!root) return {};
  std::set<oss::wstring> bound;
  CASDefinitionS const assigned = detail::readDefinition(*root);
  if (assigned.value) root = assigned.value;
  std::vector<oss::wstring> found;
  std::vector<NodeABC const*> waiting{root.get()};
  while (!waiting.empty()) {
    NodeABC const& node = *waiting.back();
    waiting.pop_back();
    ParentNodeABC const* const parent = node.asParent();
    unsigned long const count = parent ? parent->numChildren() : 0;
    long const variable = findBound(node, count);
    if (variable >= 0) bound.insert(parent->child(static_cast<unsigned long>(variable)).crefName());
    for (unsigned long i = count; i > 0; --i) waiting.push_back(&parent->child(i - 1));
    wstring const& name = node.crefName();
    bool const isNew = castNode<SymbolNodeC>(node) && !isValueName(name) &&
                       std::find(found.begin(), found.end(), name) == found.end();
    if (isNew) found.push_back(name);
  }
  found.erase(
      std::remove_if(found.begin(), found.end(), [&](wstring const& name) { return bound.count(name) != 0; }),
      found.end());
  return found;
}

}  // namespace zolt::engine_sheet
