#include "zolt/algexpr/constraints.h"

namespace zolt::math::algexpr {

ConstraintsBC::~ConstraintsBC() = default;

}  // namespace zolt::math::algexpr
