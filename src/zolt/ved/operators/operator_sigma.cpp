#include "zolt/ved/operators/operator_sigma.h"

#include "zolt/ved/operators/construct_body.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

wstring const equals = u"=";
// The sign is twice as high as this letter in the font of the limits.
wstring const measure = u"M";

long signSize(Node4C const& node, GraphicsABC const& graphics) {
  node.child(0)->selectFont(graphics);
  return 2 * graphics.getTextHeight(measure);
}

}  // namespace

OperatorSigmaC::OperatorSigmaC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {4, 3, 0, {0, 1, 2}}, 0, coreElement, code) {}

void OperatorSigmaC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const index = node->child(0);
  Node4C* const start = node->child(1);
  Node4C* const end = node->child(2);
  Node4C* const summand = node->child(3);
  long const size = signSize(*node, graphics);
  long const equalsWidth = graphics.getTextWidth(equals);
  long const bracket = graphics.getMetric(1);
  long const overhang = graphics.getMetric(2);

  long const lower = index->getWidth() + equalsWidth + start->getWidth();
  long const column = Node4C::maxDim(Node4C::maxDim(lower, end->getWidth()), size + 1);
  summand->setDX(column + bracket);
  node->setWidth(column + 2 * bracket + summand->getWidth());
  end->setDX((column - end->getWidth()) / 2);
  index->setDX((column - lower) / 2);
  start->setDX(index->getDX() + index->getWidth() + equalsWidth);

  long const above = end->getHeight() + size / 2;
  node->setMidHeight(Node4C::maxDim(above, overhang + summand->getMidHeight()));
  summand->setDY(node->getMidHeight() - summand->getMidHeight());
  end->setDY(node->getMidHeight() - above);
  long const bottom =
      Node4C::maxDim(index->getHeight(), start->getHeight()) + (size + 1) / 2 + node->getMidHeight();
  index->setDY(bottom - index->getHeight());
  start->setDY(bottom - start->getHeight());
  node->setHeight(Node4C::maxDim(summand->getDY() + summand->getHeight() + overhang, bottom));
}

void OperatorSigmaC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                  long midHeight) const {
  Node4C const* const summand = node->child(3);
  long const size = signSize(*node, graphics);
  graphics.drawSign(SIGN_SUM, x + (summand->getDX() - size - graphics.getMetric(1)) / 2,
                    y + midHeight - size / 2, size, size + 1);
  drawBefore(*node->child(1), equals, graphics, x, y);
  drawRoomyBrackets(*node, *summand, BODY_PRODUCT, graphics, x, y);
}

}  // namespace zolt::math::ved
