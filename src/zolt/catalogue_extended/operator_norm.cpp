#include "zolt/catalogue_extended/operator_norm.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

OperatorNormC::OperatorNormC() : ConstructBC(u"norm", u"norm", {1}, 0, false, 0) {
  OperatorWordsS words;
  words.group = u"Structures";
  words.title = u"norm";
  words.aliases = {u"Vert", u"length of a vector"};
  words.label = u"‖x‖";
  words.signs = u"‖";
  words.closingSign = u'‖';
  words.doubledName = u"abs";
  setWords(words);
}

void OperatorNormC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C& content = *node->child(0);
  long const beside = graphics.getMetric(3) + graphics.getMetric(0) + GraphicsABC::norm_bar_distance;
  content.setDX(beside);
  content.setDY(1);
  node->setWidth(content.getWidth() + 2 * beside);
  node->setHeight(content.getHeight() + 2);
  node->setMidHeight(content.getMidHeight() + 1);
}

void OperatorNormC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                 long height, long) const {
  graphics.beginsWith(crefFirstText(*node->child(0)));
  graphics.drawSign(SIGN_NORM_BARS, x, y, width, height);
}

}  // namespace zolt::catalogue_extended
