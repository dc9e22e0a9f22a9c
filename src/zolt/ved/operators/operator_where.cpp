#include "zolt/ved/operators/operator_where.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

wstring const equals = u"=";

}  // namespace

OperatorWhereC::OperatorWhereC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {3, 0, 1, {1, 2}}, 0, coreElement, code) {}

void OperatorWhereC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const expression = node->child(0);
  Node4C* const variable = node->child(1);
  Node4C* const value = node->child(2);
  variable->selectFont(graphics);
  long const equalsWidth = graphics.getTextWidth(equals);
  node->selectFont(graphics);
  expression->setDX(0);
  variable->setDX(expression->getWidth() + 2 * graphics.getMetric(0) + 1);
  value->setDX(variable->getDX() + variable->getWidth() + equalsWidth);
  node->setWidth(value->getDX() + value->getWidth());

  // The qualification begins at the axis of the expression; variable and value share an axis of their own.
  expression->setDY(0);
  node->setMidHeight(expression->getMidHeight());
  long const axis = node->getMidHeight() + Node4C::maxDim(variable->getMidHeight(), value->getMidHeight());
  long height = expression->getHeight();
  for (Node4C* item : {variable, value}) {
    item->setDY(axis - item->getMidHeight());
    Node4C::max1stDim(height, item->getDY() + item->getHeight());
  }
  node->setHeight(height);
}

void OperatorWhereC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long,
                                  long height, long) const {
  graphics.drawVerticalLine(x + node->child(0)->getWidth() + graphics.getMetric(0), y, height);
  node->child(2)->selectFont(graphics);
  drawBefore(*node->child(2), equals, graphics, x, y);
}

}  // namespace zolt::math::ved
