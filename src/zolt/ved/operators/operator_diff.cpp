#include "zolt/ved/operators/operator_diff.h"

#include "zolt/ved/operators/construct_body.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

OperatorDiffC::OperatorDiffC(wstring const& name, wstring const& text, int precedence, bool coreElement,
                             int code)
    : ConstructBC(name, text, {2, 1, 0, {}, ROWS_REVERSED}, precedence, coreElement, code) {}

void OperatorDiffC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const variable = node->child(0);
  Node4C* const expression = node->child(1);
  long const bracket = graphics.getMetric(1);
  variable->setDX(graphics.getTextWidth(crefText()) + 2);
  expression->setDX(variable->getDX() + variable->getWidth() + bracket + 3);
  node->setWidth(expression->getDX() + expression->getWidth() + bracket);
  node->setMidHeight(Node4C::maxDim(expression->getMidHeight() + graphics.getMetric(2),
                                    graphics.getTextHeight(crefText()) + 1));
  expression->setDY(node->getMidHeight() - expression->getMidHeight());
  variable->setDY(node->getMidHeight() + graphics.getMetric(3) + 1);
  node->setHeight(Node4C::maxDim(expression->getDY() + expression->getHeight(),
                                 variable->getDY() + variable->getHeight()));
}

void OperatorDiffC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                 long midHeight) const {
  Node4C const* const variable = node->child(0);
  Node4C const* const expression = node->child(1);
  long const bar = y + midHeight;
  long const length = variable->getDX() + variable->getWidth() + 2;
  graphics.drawTextAs(TEXT_IS_LOWER_D, crefText(), x, bar + graphics.getMetric(3) + 1);
  graphics.drawTextAs(TEXT_IS_UPPER_D, crefText(), x + (length - graphics.getTextWidth(crefText())) / 2,
                      bar - graphics.getTextHeight(crefText()) - 1);
  graphics.drawHorizontalLine(x, bar, length);
  drawRoomyBrackets(*node, *expression, BODY_OPERAND, graphics, x, y);
}

}  // namespace zolt::math::ved
