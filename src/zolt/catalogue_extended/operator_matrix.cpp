#include "zolt/catalogue_extended/operator_matrix.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

/// The room of a bracket, whose cell is that of a parenthesis.
long measureBracket(GraphicsABC const& graphics) { return graphics.getMetric(1) + graphics.getMetric(0); }

}  // namespace

OperatorMatrixC::OperatorMatrixC(unsigned long columns)
    : OperatorResizableTableBC(u"matrix", u"matrix", columns) {
  OperatorWordsS words = makeWords(u"matrix");
  words.aliases = {u"bmatrix", u"pmatrix", u"array"};
  words.label = u"[:::]";
  words.closingSign = u']';
  words.insideSigns.push_back({u']', table_end_name});
  setWords(words);
  if (columns == usual_columns) makeVariants<OperatorMatrixC>();
}

void OperatorMatrixC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long const bracket = measureBracket(graphics);
  layoutTable(*node, spacesBetween(graphics, bracket, bracket), ALIGNED_CENTRE, graphics);
}

void OperatorMatrixC::displayNode4(Node4C*, GraphicsABC const& graphics, long x, long y, long width,
                                   long height, long) const {
  long const cell = graphics.getMetric(1);
  graphics.drawSign(SIGN_OPEN_SQUARE, x, y, cell, height);
  graphics.drawSign(SIGN_CLOSE_SQUARE, x + width - cell, y, cell, height);
}

}  // namespace zolt::catalogue_extended
