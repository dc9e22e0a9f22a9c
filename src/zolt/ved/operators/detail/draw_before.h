// Internal to operators/: a sign or letter that a construct shows between two of its rows.
#pragma once

#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::detail {

/// Draws `text` left of `row` and on its axis; (x, y) is the corner of the construct.
inline void drawBefore(Node4C const& row, wstring const& text, GraphicsABC const& graphics, long x, long y) {
  long width = 0;
  long height = 0;
  long axis = 0;
  graphics.getTextExtent(text, width, height, axis);
  graphics.drawText(text, x + row.getDX() - width, y + row.getDY() + row.getMidHeight() - axis);
}

}  // namespace zolt::math::ved::detail
