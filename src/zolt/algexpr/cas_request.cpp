#include "zolt/algexpr/cas_request.h"

#include <utility>

#include "zolt/algexpr/parent_node.h"

namespace zolt::math::algexpr {

PointerTC<CASDefinitionsC> CASDefinitionsC::with(CASDefinitionS added) const {
  PointerTC<CASDefinitionsC> copy(new CASDefinitionsC);
  copy->all_ = all_;
  wstring const name = added.name;
  copy->all_[name] = std::move(added);
  return copy;
}

PointerTC<CASDefinitionsC> CASDefinitionsC::without(wstring const& name) const {
  PointerTC<CASDefinitionsC> copy(new CASDefinitionsC);
  copy->all_ = all_;
  copy->all_.erase(name);
  return copy;
}

CASDefinitionS const* CASDefinitionsC::find(wstring const& name) const {
  auto const found = all_.find(name);
  return found == all_.end() ? nullptr : &found->second;
}

wstring describe(CASResultS const& result) {
  wstring const name = u"\"" + result.subject + u"\"";
  switch (result.cause) {
    case CAS_CAUSE_NONE:
      return {};
    case CAS_CAUSE_NEEDS_ALGEBRA:
      return u"This needs an algebra system";
    case CAS_CAUSE_NOT_FOUND:
      return u"The algebra system does not know a value";
    case CAS_CAUSE_ONLY_ROUNDED:
      return u"The solutions can be given only as rounded numbers";
    case CAS_CAUSE_NO_REAL_SOLUTION:
      return u"There is no real solution";
    case CAS_CAUSE_NO_FUNCTION:
      return name + u" is not defined";
    case CAS_CAUSE_NOT_REAL:
      return u"This has no real value";
    case CAS_CAUSE_NO_VALUE:
      return name + u" has no value";
    case CAS_CAUSE_NOT_CERTAIN:
      return u"Rounding leaves nothing of this that is certain";
    case CAS_CAUSE_TOO_LARGE:
      return u"This is too large to compute";
    case CAS_CAUSE_DEADLINE:
      return u"This takes too long to compute";
    case CAS_CAUSE_STOPPED:
      return u"The computation was stopped";
    case CAS_CAUSE_ENGINE_LOST:
      return u"The algebra system does not answer";
    case CAS_CAUSE_DIVISION_BY_ZERO:
      return u"This divides by zero";
    case CAS_CAUSE_UNDEFINED:
      return u"This is not defined";
    case CAS_CAUSE_WRONG_ARGUMENT:
      return u"A value of another kind is needed here";
    case CAS_CAUSE_CIRCULAR:
      return name + u" is defined by itself";
  }
  return {};
}

PointerTC<NodeABC> findPart(AlgebraicExpressionC const& expression, unsigned long number) {
  std::vector<PointerTC<NodeABC>> waiting;
  if (expression.getNode()) waiting.push_back(expression.getNode());
  while (!waiting.empty()) {
    PointerTC<NodeABC> const node = std::move(waiting.back());
    waiting.pop_back();
    if (number-- == 0) return node;
    ParentNodeABC const* const parent = node->asParent();
    for (unsigned long i = parent ? parent->numChildren() : 0; i > 0; --i) {
      waiting.push_back(parent->childPointer(i - 1));
    }
  }
  return nullptr;
}

}  // namespace zolt::math::algexpr
