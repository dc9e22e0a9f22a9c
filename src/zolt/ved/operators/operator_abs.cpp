#include "zolt/ved/operators/operator_abs.h"

#include "zolt/ved/operators/construct.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

OperatorAbsC::OperatorAbsC(wstring const& name, wstring const& text, bool coreElement, int code)
    : OperatorBC(name, text, 1, 0, false, coreElement, code) {}

OperatorAbsC::~OperatorAbsC() = default;

std::pair<Node4C*, int> OperatorAbsC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  return makeConstruct(*this, {0}, stack);
}

void OperatorAbsC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const content = node->child(0);
  long const margin = graphics.getMetric(3) + graphics.getMetric(0);
  content->setDX(margin);
  content->setDY(1);
  node->setWidth(content->getWidth() + 2 * margin);
  node->setHeight(content->getHeight() + 2);
  node->setMidHeight(content->getMidHeight() + 1);
}

void OperatorAbsC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width, long height,
                                long) const {
  graphics.drawVerticalLine(x, y, height);
  graphics.drawVerticalLine(x + width - 1, y, height);
}

bool OperatorAbsC::runOperator(ViewZNT4C& view) const { return insertEnclosure(*this, view); }

bool OperatorAbsC::hasOwnRow(unsigned long) const { return true; }

}  // namespace zolt::math::ved
