#include "zolt/catalogue_extended/operator_binomial.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

OperatorBinomialC::OperatorBinomialC() : ConstructBC(u"binomial", u"binomial", {2, 0, 1}, 0, false, 0) {
  OperatorWordsS words;
  words.group = u"Structures";
  words.title = u"binomial coefficient";
  words.label = u"(n k)";
  words.names = {{u"binom", {}}, {u"choose", {}}};
  setWords(words);
}

void OperatorBinomialC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const n = node->child(0);
  Node4C* const k = node->child(1);
  long const bracket = graphics.getMetric(1);
  long const overhang = graphics.getMetric(2);
  // The gap between the rows is around the axis.
  long const gap = 2 * graphics.getMetric(3);
  long const inner = Node4C::maxDim(n->getWidth(), k->getWidth());
  n->setDX(bracket + (inner - n->getWidth()) / 2);
  n->setDY(overhang);
  k->setDX(bracket + (inner - k->getWidth()) / 2);
  k->setDY(overhang + n->getHeight() + gap);
  node->setWidth(inner + 2 * bracket);
  node->setHeight(k->getDY() + k->getHeight() + overhang);
  node->setMidHeight(overhang + n->getHeight() + gap / 2);
}

void OperatorBinomialC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width,
                                     long height, long) const {
  long const bracket = graphics.getMetric(1);
  long const overhang = graphics.getMetric(2);
  graphics.drawBracketPair(x + bracket, y + overhang, width - 2 * bracket, height - 2 * overhang, false);
}

}  // namespace zolt::catalogue_extended
