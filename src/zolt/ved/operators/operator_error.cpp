#include "zolt/ved/operators/operator_error.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

namespace {

wstring const separator = u",";

}  // namespace

OperatorErrorC::OperatorErrorC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {0}, 0, coreElement, code) {}

void OperatorErrorC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long width = 0;
  long height = 0;
  long axis = 0;
  graphics.getTextExtent(crefText(), width, height, axis);
  long below = height - axis;
  if (node->numChildren() > 0) {
    long const overhang = graphics.getMetric(2);
    long const bracket = graphics.getMetric(1);
    long const separatorWidth = graphics.getTextWidth(separator);
    for (unsigned long i = 0; i < node->numChildren(); ++i) {
      Node4C* const argument = node->child(i);
      width += i == 0 ? bracket : separatorWidth;
      argument->setDX(width);
      width += argument->getWidth();
      Node4C::max1stDim(axis, argument->getMidHeight() + overhang);
      Node4C::max1stDim(below, argument->getHeight() - argument->getMidHeight() + overhang);
    }
    width += bracket;
    for (unsigned long i = 0; i < node->numChildren(); ++i) {
      node->child(i)->setDY(axis - node->child(i)->getMidHeight());
    }
  }
  node->setWidth(width);
  node->setMidHeight(axis);
  node->setHeight(axis + below);
}

void OperatorErrorC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                  long height, long midHeight) const {
  graphics.drawText(crefText(), x, y + midHeight - graphics.getTextMidHeight(crefText()));
  unsigned long const count = node->numChildren();
  if (count == 0) return;
  for (unsigned long i = 1; i < count; ++i) drawBefore(*node->child(i), separator, graphics, x, y);
  long const first = node->child(0)->getDX();
  long const overhang = graphics.getMetric(2);
  graphics.beginsWith(crefFirstText(*node->child(0)));
  graphics.drawBracketPair(x + first, y + overhang, width - first - graphics.getMetric(1),
                           height - 2 * overhang, true);
}

bool OperatorErrorC::runOperator(ViewZNT4C&) const { return false; }

}  // namespace zolt::math::ved
