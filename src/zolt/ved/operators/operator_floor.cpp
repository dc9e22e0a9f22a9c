#include "zolt/ved/operators/operator_floor.h"

#include "zolt/ved/operators/construct.h"
#include "zolt/ved/operators/detail/bars.h"

namespace zolt::math::ved {

OperatorFloorC::OperatorFloorC(wstring const& name, wstring const& text, bool coreElement, int code)
    : OperatorBC(name, text, 1, 0, false, coreElement, code) {}

OperatorFloorC::~OperatorFloorC() = default;

std::pair<Node4C*, int> OperatorFloorC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  return makeConstruct(*this, {0}, stack);
}

void OperatorFloorC::layoutNode4(Node4C* node, GraphicsABC const&) const {
  detail::layoutBars(*node, GraphicsABC::serif_length, 1, 2);
}

void OperatorFloorC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width,
                                  long height, long) const {
  graphics.drawSign(SIGN_FLOOR_BARS, x, y, width, height);
}

bool OperatorFloorC::runOperator(ViewZNT4C& view) const { return insertEnclosure(*this, view); }

bool OperatorFloorC::hasOwnRow(unsigned long) const { return true; }

}  // namespace zolt::math::ved
