#include "zolt/engines/sheet/detail/line_names.h"

#include <algorithm>

#include "zolt/algexpr/nodes.h"

namespace zolt::engine_sheet::detail {

using namespace math::algexpr;

namespace {

class NameCollectorC final : public NodeVisitorABC {
 public:
  NameCollectorC() : NodeVisitorABC(VISIT_PARENT_FIRST) {}
  void visitCoreFunction(CoreFunctionNodeC&) override {}
  void visitUserFunction(UserFunctionNodeC& node) override { names_.push_back(node.crefName()); }
  void visitCoreConstant(CoreConstantNodeC&) override {}
  void visitInteger(IntegerNodeC&) override {}
  void visitFloat(FloatNodeC&) override {}
  void visitSymbol(SymbolNodeC& node) override { names_.push_back(node.crefName()); }

  std::vector<wstring> takeNames() {
    std::sort(names_.begin(), names_.end());
    names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
    return std::move(names_);
  }

 private:
  std::vector<wstring> names_;
};

}  // namespace

std::vector<wstring> findNames(NodeABC const& expression) {
  NameCollectorC collector;
  // A node does not change by being held once more.
  PointerTC<NodeABC> const node(const_cast<NodeABC*>(&expression));
  AlgebraicExpressionC(node, nullptr).accept(collector);
  return collector.takeNames();
}

CASDefinitionS readDefinition(NodeABC const& expression) {
  ParentNodeABC const* const whole = expression.asParent();
  bool const isStore = expression.crefName() == u":>";
  if (!whole || whole->numChildren() != 2 || (!isStore && expression.crefName() != u":=")) return {};
  NodeABC const& target = whole->child(isStore ? 1 : 0);
  CASDefinitionS definition;
  if (ParentNodeABC const* const call = target.asParent()) {
    if (!castNode<UserFunctionNodeC>(target)) return {};
    for (unsigned long i = 0; i < call->numChildren(); ++i) {
      if (!castNode<SymbolNodeC>(call->child(i))) return {};
      definition.parameters.push_back(call->child(i).crefName());
    }
  } else if (!castNode<SymbolNodeC>(target)) {
    return {};
  }
  definition.name = target.crefName();
  definition.value = whole->childPointer(isStore ? 0 : 1);
  return definition;
}

std::vector<wstring> findOpenNames(CASDefinitionS const& definition) {
  std::vector<wstring> names = findNames(*definition.value);
  auto const isParameter = [&](wstring const& name) {
    auto const& all = definition.parameters;
    return std::find(all.begin(), all.end(), name) != all.end();
  };
  names.erase(std::remove_if(names.begin(), names.end(), isParameter), names.end());
  return names;
}

bool areEqual(CASDefinitionS const& a, CASDefinitionS const& b) {
  if (a.name != b.name || a.parameters != b.parameters || !a.value != !b.value) return false;
  return !a.value || AlgebraicExpressionC(a.value, nullptr).equals(AlgebraicExpressionC(b.value, nullptr));
}

}  // namespace zolt::engine_sheet::detail
