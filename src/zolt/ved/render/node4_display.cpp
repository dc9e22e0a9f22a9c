#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

bool Node4C::display(GraphicsABC const& graphics, long x, long y, Node4C const* current) const {
  long const left = x + getDX();
  long const top = y + getDY();
  for (Node4C const* child : children_) {
    if (!child->display(graphics, left, top, current)) return false;
  }
  selectFont(graphics);
  switch (type_) {
    case NODE4_ROOT:
    case NODE4_LINE:
    case NODE4_POWER:
      break;
    case NODE4_OPERATOR:
      op_->displayNode4(const_cast<Node4C*>(this), graphics, left, top, width_, height_, midHeight_);
      break;
    case NODE4_OPEN:
    case NODE4_AUTO_OPEN:
      graphics.drawOpenBracket(left, top, height_, type_ == NODE4_AUTO_OPEN);
      break;
    case NODE4_CLOSE:
    case NODE4_AUTO_CLOSE:
      graphics.drawCloseBracket(left + width_, top, height_, type_ == NODE4_AUTO_CLOSE);
      break;
    default:
      graphics.drawText(current && current != this && isPlaceholder() ? PLACEHOLDER_STR : text_, left, top);
  }
  return true;
}

void Node4C::display_standard(GraphicsABC const&, long, long, long) const {}

}  // namespace zolt::math::ved
