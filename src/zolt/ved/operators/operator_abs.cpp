#include "zolt/ved/operators/operator_abs.h"

#include "zolt/ved/operators/construct.h"
#include "zolt/ved/operators/detail/bars.h"

namespace zolt::math::ved {

OperatorAbsC::OperatorAbsC(wstring const& name, wstring const& text, bool coreElement, int code)
    : OperatorBC(name, text, 1, 0, false, coreElement, code) {}

OperatorAbsC::~OperatorAbsC() = default;

std::pair<Node4C*, int> OperatorAbsC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  return makeConstruct(*this, {0}, stack);
}

void OperatorAbsC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  detail::layoutBars(*node, graphics.getMetric(3) + graphics.getMetric(0), 1, 1);
}

void OperatorAbsC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width, long height,
                                long) const {
  graphics.drawSign(SIGN_ABSOLUTE_BARS, x, y, width, height);
}

bool OperatorAbsC::runOperator(ViewZNT4C& view) const { return insertEnclosure(*this, view); }

bool OperatorAbsC::hasOwnRow(unsigned long) const { return true; }

}  // namespace zolt::math::ved
