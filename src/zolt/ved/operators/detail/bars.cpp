#include "zolt/ved/operators/detail/bars.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::detail {

void layoutBars(Node4C& node, long beside, long above, long below) {
  Node4C& content = *node.child(0);
  content.setDX(beside);
  content.setDY(above);
  node.setWidth(content.getWidth() + 2 * beside);
  node.setHeight(above + content.getHeight() + below);
  node.setMidHeight(above + content.getMidHeight());
}

}  // namespace zolt::math::ved::detail
