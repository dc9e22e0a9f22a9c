#include "zolt/ved/operators/detail/serif_bars.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::detail {

namespace {

constexpr long serif_length = 5;

}  // namespace

void layoutSerifBars(Node4C& node, SerifEndE serifs) {
  // One unit is free at either end, and one more beside the serifs.
  long const above = serifs == SERIFS_AT_TOP ? 2 : 1;
  Node4C& content = *node.child(0);
  content.setDX(serif_length);
  content.setDY(above);
  node.setWidth(content.getWidth() + 2 * serif_length);
  node.setHeight(content.getHeight() + 3);
  node.setMidHeight(content.getMidHeight() + above);
}

void drawSerifBars(GraphicsABC const& graphics, PointS corner, long width, long height, SerifEndE serifs) {
  long const right = corner.x + width - 1;
  long const row = serifs == SERIFS_AT_TOP ? corner.y : corner.y + height - 1;
  graphics.drawVerticalLine(corner.x, corner.y, height);
  graphics.drawHorizontalLine(corner.x, row, serif_length);
  graphics.drawVerticalLine(right, corner.y, height);
  graphics.drawHorizontalLine(right + 1 - serif_length, row, serif_length);
}

}  // namespace zolt::math::ved::detail
