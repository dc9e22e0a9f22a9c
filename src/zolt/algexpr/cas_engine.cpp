#include "zolt/algexpr/cas_engine.h"

#include "zolt/algexpr/detail/core_names.h"

namespace zolt::math::algexpr {

CASEngineABC::~CASEngineABC() = default;

wstring CASEngineABC::getName() const { return wstring(); }

bool CASEngineABC::isCoreFunction(wstring const& name) const {
  detail::CoreNameS const* const core = detail::findCoreName(name);
  return core && core->has(detail::CORE_FUNCTION);
}

bool CASEngineABC::isCoreConstant(wstring const& name) const {
  detail::CoreNameS const* const core = detail::findCoreName(name);
  return core && core->has(detail::CORE_CONSTANT);
}

}  // namespace zolt::math::algexpr
