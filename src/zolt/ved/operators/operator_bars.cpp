#include "zolt/ved/operators/operator_bars.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

OperatorBarsBC::OperatorBarsBC(wstring const& name, wstring const& text, bool coreElement, int code,
                               SignE bars)
    : ConstructBC(name, text, {1}, 0, coreElement, code), bars_(bars) {}

void OperatorBarsBC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C& content = *node->child(0);
  bool const plain = bars_ == SIGN_ABSOLUTE_BARS;
  long const beside = plain ? graphics.getMetric(3) + graphics.getMetric(0) : GraphicsABC::serif_length;
  long const above = bars_ == SIGN_CEILING_BARS ? 2 : 1;
  long const below = bars_ == SIGN_FLOOR_BARS ? 2 : 1;
  content.setDX(beside);
  content.setDY(above);
  node->setWidth(content.getWidth() + 2 * beside);
  node->setHeight(above + content.getHeight() + below);
  node->setMidHeight(above + content.getMidHeight());
}

void OperatorBarsBC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                  long height, long) const {
  graphics.beginsWith(crefFirstText(*node->child(0)));
  graphics.drawSign(bars_, x, y, width, height);
}

}  // namespace zolt::math::ved
