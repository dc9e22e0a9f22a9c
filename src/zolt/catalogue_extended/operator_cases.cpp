#include "zolt/catalogue_extended/operator_cases.h"

#include <algorithm>

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
  // Its straight parts end a bend away from the tip and from both ends.
  long const depth = graphics.getMetric(1) - 1;
  long const bend = std::min(depth, height / 4);
  long const tip = y + height / 2;
  long const bottom = y + height - 1;
  long const stem = x + depth / 2;
  graphics.drawStroke(STROKE_SMOOTH, {{x + depth, y},
                                      {stem, y + bend},
                                      {stem, tip - bend},
                                      {x, tip},
                                      {stem, tip + bend},
                                      {stem, bottom - bend},
                                      {x + depth, bottom}});
}

}  // namespace zolt::catalogue_extended
