#include "zolt/algexpr/cas_engine.h"

#include "zolt/algexpr/cas_request.h"
#include "zolt/algexpr/detail/core_names.h"

namespace zolt::math::algexpr {

bool CASEngineABC::isCoreFunction(wstring const& name) const {
  return detail::hasTrait(name, detail::CORE_FUNCTION);
}

bool CASEngineABC::isCoreConstant(wstring const& name) const {
  return detail::hasTrait(name, detail::CORE_CONSTANT);
}

CASResultS CASEngineABC::compute(CASRequestS const&, CASStopC const*) const { return {}; }

}  // namespace zolt::math::algexpr
