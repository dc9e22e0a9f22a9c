#include "zolt/ved/operators/operator_ceil.h"

#include "zolt/ved/operators/construct.h"
#include "zolt/ved/operators/detail/bars.h"

namespace zolt::math::ved {

OperatorCeilC::OperatorCeilC(wstring const& name, wstring const& text, bool coreElement, int code)
    : OperatorBC(name, text, 1, 0, false, coreElement, code) {}

OperatorCeilC::~OperatorCeilC() = default;

std::pair<Node4C*, int> OperatorCeilC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  return makeConstruct(*this, {0}, stack);
}

void OperatorCeilC::layoutNode4(Node4C* node, GraphicsABC const&) const {
  detail::layoutBars(*node, GraphicsABC::serif_length, 2, 1);
}

void OperatorCeilC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width,
                                 long height, long) const {
  graphics.drawSign(SIGN_CEILING_BARS, x, y, width, height);
}

bool OperatorCeilC::runOperator(ViewZNT4C& view) const { return insertEnclosure(*this, view); }

bool OperatorCeilC::hasOwnRow(unsigned long) const { return true; }

}  // namespace zolt::math::ved
