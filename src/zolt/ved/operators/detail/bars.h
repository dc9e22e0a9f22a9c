// Internal to operators/: what the absolute value, the ceiling and the floor have in common.
#pragma once

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::math::ved::detail {

/// Places the only row of `node` between two bars and sets the construct's size and axis. The free space on
/// each side of the row, above it and below it is given in units.
void layoutBars(Node4C& node, long beside, long above, long below);

}  // namespace zolt::math::ved::detail
