#include "zolt/ved/geometry/graphics.h"

namespace zolt::math::ved {

GraphicsABC::~GraphicsABC() = default;

}  // namespace zolt::math::ved
