#include "zolt/ved/operators/operator_integral.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// The width of the sign's column to the left of the bounds, with the unit that separates the two.
constexpr long sign_width = 6;
wstring const differential = u"d";

}  // namespace

OperatorIntegralC::OperatorIntegralC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {4, 2, 0, {0, 1}}, 0, coreElement, code) {}

void OperatorIntegralC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const lower = node->child(0);
  Node4C* const upper = node->child(1);
  Node4C* const integrand = node->child(2);
  Node4C* const variable = node->child(3);
  long const gap = graphics.getMetric(0);

  long const bounds = Node4C::maxDim(lower->getWidth(), upper->getWidth());
  lower->setDX((bounds - lower->getWidth()) / 2 + sign_width);
  upper->setDX((bounds - upper->getWidth()) / 2 + sign_width);
  integrand->setDX(bounds + gap + sign_width);
  variable->setDX(integrand->getDX() + integrand->getWidth() + gap + graphics.getTextWidth(differential) +
                  gap);
  node->setWidth(variable->getDX() + variable->getWidth());

  upper->setDY(0);
  integrand->setDY(upper->getHeight());
  node->setMidHeight(integrand->getDY() + integrand->getMidHeight());
  variable->setDY(node->getMidHeight() - variable->getMidHeight());
  lower->setDY(integrand->getDY() + integrand->getHeight());
  node->setHeight(lower->getDY() + lower->getHeight());
}

void OperatorIntegralC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long,
                                     long height, long midHeight) const {
  graphics.drawSign(SIGN_INTEGRAL, x, y, sign_width - 1, height);
  long textWidth = 0;
  long textHeight = 0;
  long textMidHeight = 0;
  graphics.getTextExtent(differential, textWidth, textHeight, textMidHeight);
  graphics.drawTextAs(TEXT_IS_INTEGRAL_D, differential,
                      x + node->child(3)->getDX() - graphics.getMetric(0) - textWidth,
                      y + midHeight - textMidHeight);
}

}  // namespace zolt::math::ved
