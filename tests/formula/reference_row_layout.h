#pragma once

#include <string>

#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::tests {

/// Places the items of every row of the laid-out `tree` anew, item by item as rows are described, from
/// nothing but the sizes of the items. Empty, or the first difference to the layout that the tree has.
std::string findLayoutDifference(math::ved::Node4C const& tree, math::ved::GraphicsABC const& graphics);

}  // namespace zolt::tests
