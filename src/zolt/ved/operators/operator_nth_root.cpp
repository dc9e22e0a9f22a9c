#include "zolt/ved/operators/operator_nth_root.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

namespace {

// The least distance from the index, which is above the tick, down to the radicand's bottom.
constexpr long index_clearance = 2;

}  // namespace

OperatorNthRootC::OperatorNthRootC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {2, 1, 0, {0}, ROWS_REVERSED}, 0, coreElement, code) {}

void OperatorNthRootC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const index = node->child(0);
  Node4C* const radicand = node->child(1);
  long const gap = graphics.getMetric(0);
  long const margin = graphics.getMetric(3);
  long const top = gap + margin;
  index->setDX(0);
  index->setDY(0);
  radicand->setDX(margin + 2 * gap + index->getWidth());
  radicand->setDY(Node4C::maxDim(top, index->getHeight() + index_clearance - radicand->getHeight()));
  node->setWidth(radicand->getDX() + radicand->getWidth() + 1);
  node->setHeight(radicand->getDY() + radicand->getHeight() + 2);
  node->setMidHeight(radicand->getDY() + radicand->getMidHeight());
}

void OperatorNthRootC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                    long height, long) const {
  Node4C const* const radicand = node->child(1);
  long const margin = graphics.getMetric(0) + graphics.getMetric(3);
  long const left = radicand->getDX() - margin - graphics.getTickSize(SIGN_INDEXED_RADICAL);
  long const top = radicand->getDY() - margin;
  graphics.beginsWith(crefFirstText(*radicand));
  graphics.drawSign(SIGN_INDEXED_RADICAL, x + left, y + top, width - left, height - top);
}

}  // namespace zolt::math::ved
