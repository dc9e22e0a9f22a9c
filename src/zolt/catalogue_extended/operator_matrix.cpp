#include "zolt/catalogue_extended/operator_matrix.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

/// The width of a bracket, which takes the cell of a parenthesis.
long measureBracket(GraphicsABC const& graphics) { return graphics.getMetric(1) + graphics.getMetric(0); }

}  // namespace

OperatorMatrixC::OperatorMatrixC(unsigned long columns)
    : OperatorResizableTableBC(u"matrix", u"matrix", columns) {
  OperatorWordsS words = makeWords(u"matrix");
  words.aliases = {u"bmatrix", u"pmatrix", u"array"};
  words.label = u"[:::]";
  words.closingSign = u']';
  setWords(words);
  if (columns == usual_columns) makeVariants<OperatorMatrixC>();
}

void OperatorMatrixC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long const bracket = measureBracket(graphics);
  layoutTable(*node, spacesBetween(graphics, bracket, bracket), ALIGNED_CENTRE, graphics);
}

void OperatorMatrixC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width,
                                   long height, long) const {
  long const serif = graphics.getMetric(1) / 2;
  long const bottom = y + height - 1;
  for (long const side : {x + 1, x + width - 2}) {
    long const end = side < x + width / 2 ? side + serif : side - serif;
    graphics.drawStroke(STROKE_WITH_CORNERS, {{end, y}, {side, y}, {side, bottom}, {end, bottom}});
  }
}

}  // namespace zolt::catalogue_extended
