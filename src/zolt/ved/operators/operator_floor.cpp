#include "zolt/ved/operators/operator_floor.h"

#include "zolt/ved/operators/detail/enclosure.h"
#include "zolt/ved/operators/detail/operands.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

constexpr long serif_length = 5;

}  // namespace

OperatorFloorC::OperatorFloorC(wstring const& name, wstring const& text, bool coreElement, int code)
    : OperatorBC(name, text, 1, 0, false, coreElement, code) {}

OperatorFloorC::~OperatorFloorC() = default;

std::pair<Node4C*, int> OperatorFloorC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  return {detail::makeConstruct(*this, {0}, stack), getPrecedence()};
}

void OperatorFloorC::layoutNode4(Node4C* node, GraphicsABC const&) const {
  // The serifs at the bottom have a free row of their own above them.
  constexpr long above = 1;
  Node4C* const content = node->child(0);
  content->setDX(serif_length);
  content->setDY(above);
  node->setWidth(content->getWidth() + 2 * serif_length);
  node->setHeight(content->getHeight() + 3);
  node->setMidHeight(content->getMidHeight() + above);
}

void OperatorFloorC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width,
                                  long height, long) const {
  long const right = x + width - 1;
  graphics.drawVerticalLine(x, y, height);
  graphics.drawHorizontalLine(x, y + height - 1, serif_length);
  graphics.drawVerticalLine(right, y, height);
  graphics.drawHorizontalLine(right + 1 - serif_length, y + height - 1, serif_length);
}

bool OperatorFloorC::runOperator(ViewZNT4C& view) const { return detail::insertEnclosure(*this, view); }

bool OperatorFloorC::hasOwnRow(unsigned long) const { return true; }

}  // namespace zolt::math::ved
