#include "zolt/ved/operators/operator_sqrt.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

namespace {

// The width of the radical sign to the left of the radicand, and of the bar beyond its right end.
constexpr long sign_width = 5;
constexpr long bar_overhang = 1;

}  // namespace

OperatorSqrtC::OperatorSqrtC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {1}, 0, coreElement, code) {}

void OperatorSqrtC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const radicand = node->child(0);
  long const top = graphics.getMetric(3) + graphics.getMetric(0);
  radicand->setDX(sign_width);
  radicand->setDY(top);
  node->setWidth(radicand->getWidth() + sign_width + bar_overhang);
  node->setHeight(top + radicand->getHeight() + 2);
  node->setMidHeight(top + radicand->getMidHeight());
}

void OperatorSqrtC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                 long height, long) const {
  graphics.beginsWith(crefFirstText(*node->child(0)));
  graphics.drawSign(SIGN_RADICAL, x, y, width, height);
}

}  // namespace zolt::math::ved
