#include "zolt/algexpr/standard_engine.h"

namespace zolt::math::algexpr {

wstring StandardEngineC::getName() const { return u"standard"; }

}  // namespace zolt::math::algexpr
