#include "zolt/catalogue_extended/operator_cases.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

constexpr unsigned long value_and_condition = 2;

}  // namespace

OperatorCasesC::OperatorCasesC() : OperatorTableBC(u"cases", u"cases", value_and_condition) {
  OperatorWordsS words = makeWords(u"cases");
  words.aliases = {u"piecewise", u"if"};
  words.label = u"{:";
  setWords(words);
}

PointerTC<OperatorBC> OperatorCasesC::findFor(unsigned long columns) const {
  return columns == value_and_condition ? const_cast<OperatorCasesC*>(this) : nullptr;
}

void OperatorCasesC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long const brace = graphics.getMetric(1) + 2 * graphics.getMetric(0);
  layoutTable(*node, spacesBetween(graphics, brace, 0), ALIGNED_LEFT, graphics);
}

void OperatorCasesC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long, long height,
                                  long) const {
  graphics.drawSign(SIGN_OPEN_BRACE, x, y, graphics.getMetric(1), height);
}

}  // namespace zolt::catalogue_extended
