#include "zolt/algexpr/standard_engine.h"

#include "zolt/algexpr/detail/core_names.h"

namespace zolt::math::algexpr {

wstring StandardEngineC::getName() const { return u"standard"; }

bool StandardEngineC::isCoreFunction(wstring const& name) const {
  detail::CoreNameS const* const core = detail::findCoreName(name);
  return core && core->isFunction;
}

bool StandardEngineC::isCoreConstant(wstring const& name) const {
  detail::CoreNameS const* const core = detail::findCoreName(name);
  return core && core->isConstant;
}

}  // namespace zolt::math::algexpr
