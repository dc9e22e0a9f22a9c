#include "zolt/catalogue_extended/operator_det.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

OperatorDetC::OperatorDetC(unsigned long columns)
    : OperatorResizableTableBC(u"det", u"determinant", columns) {
  OperatorWordsS words = makeWords(u"determinant");
  words.aliases = {u"vmatrix"};
  words.names = {{u"determinant", {}}};
  words.shortcut = u"determinant(";
  words.label = u"|:::|";
  setWords(words);
  if (columns == usual_columns) makeVariants<OperatorDetC>();
}

void OperatorDetC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long const bar = 3 * graphics.getMetric(0) + graphics.getMetric(3);
  layoutTable(*node, spacesBetween(graphics, bar, bar), ALIGNED_CENTRE, graphics);
}

void OperatorDetC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width, long height,
                                long) const {
  graphics.drawSign(SIGN_ABSOLUTE_BARS, x, y, width, height);
}

}  // namespace zolt::catalogue_extended
