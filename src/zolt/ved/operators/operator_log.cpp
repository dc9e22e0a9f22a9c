#include "zolt/ved/operators/operator_log.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

OperatorLogC::OperatorLogC(wstring const& name, wstring const& text, int precedence, bool coreElement,
                           int code)
    : ConstructBC(name, text, {2, 1, 0, {0}, ROWS_REVERSED}, precedence, coreElement, code) {}

void OperatorLogC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const base = node->child(0);
  Node4C* const argument = node->child(1);
  long const bracket = graphics.getMetric(1);
  long const overhang = graphics.getMetric(2);
  base->setDX(graphics.getTextWidth(crefText()) + 1);
  argument->setDX(base->getDX() + base->getWidth() + bracket + 1);
  argument->setDY(overhang);
  node->setWidth(argument->getDX() + argument->getWidth() + bracket);
  node->setMidHeight(overhang + argument->getMidHeight());
  base->setDY(node->getMidHeight());
  node->setHeight(Node4C::maxDim(base->getDY() + base->getHeight(), argument->getHeight() + 2 * overhang));
}

void OperatorLogC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                long midHeight) const {
  Node4C const* const argument = node->child(1);
  graphics.drawText(crefText(), x, y + midHeight - graphics.getTextMidHeight(crefText()));
  graphics.beginsWith(crefFirstText(*argument));
  graphics.drawBracketPair(x + argument->getDX(), y + argument->getDY(), argument->getWidth(),
                           argument->getHeight(), true);
}

}  // namespace zolt::math::ved
