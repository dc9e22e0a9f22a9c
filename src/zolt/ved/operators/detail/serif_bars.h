// Internal to operators/: what the ceiling and the floor have in common.
#pragma once

#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/geometry/point.h"

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::math::ved::detail {

/// At which end of its two bars a construct has serifs, which point inwards.
enum SerifEndE { SERIFS_AT_TOP, SERIFS_AT_BOTTOM };

/// Places the only row of `node` between the bars and sets the construct's size and axis.
void layoutSerifBars(Node4C& node, SerifEndE serifs);

/// Draws the bars of a construct whose top-left corner is `corner`.
void drawSerifBars(GraphicsABC const& graphics, PointS corner, long width, long height, SerifEndE serifs);

}  // namespace zolt::math::ved::detail
