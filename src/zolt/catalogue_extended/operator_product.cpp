#include "zolt/catalogue_extended/operator_product.h"

#include "zolt/ved/operators/construct_body.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

wstring const equals = u"=";

/// The sign is twice as high as a letter in the font of the bounds.
long signSize(Node4C const& node, GraphicsABC const& graphics) {
  node.child(0)->selectFont(graphics);
  return 2 * graphics.getTextHeight(u"M");
}

}  // namespace

OperatorProductC::OperatorProductC()
    : ConstructBC(u"product", u"product", {4, 3, 0, {0, 1, 2}, ROWS_LIKE_ARGUMENTS, EXPONENT_AMBIGUOUS}, 0,
                  false, 0) {
  OperatorWordsS words;
  words.group = u"Calculus";
  words.title = u"product";
  words.label = u"∏";
  words.shortcut = u"prod(";
  words.names = {{u"prod", {}}};
  words.aliases = {u"pi sign"};
  words.signs = u"∏";
  words.valueRow = 1;
  words.lowerRows = 2;
  words.hasUpperRow = true;
  setWords(words);
}

void OperatorProductC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C& variable = *node->child(0);
  Node4C& from = *node->child(1);
  Node4C& to = *node->child(2);
  Node4C& term = *node->child(3);
  long const size = signSize(*node, graphics);
  long const sign = graphics.getTextWidth(equals);
  node->selectFont(graphics);
  auto const room = bodyRoom(term, BODY_PRODUCT, graphics);
  long const overhang = graphics.getMetric(2);

  long const bounds = variable.getWidth() + sign + from.getWidth();
  long const column = Node4C::maxDim(Node4C::maxDim(bounds, to.getWidth()), size + 1);
  to.setDX((column - to.getWidth()) / 2);
  variable.setDX((column - bounds) / 2);
  from.setDX(variable.getDX() + variable.getWidth() + sign);
  term.setDX(column + room.left);
  node->setWidth(term.getDX() + term.getWidth() + room.right);

  long const axis = Node4C::maxDim(to.getHeight() + size / 2, overhang + term.getMidHeight());
  long const below = Node4C::maxDim(variable.getMidHeight(), from.getMidHeight()) + axis + (size + 1) / 2;
  node->setMidHeight(axis);
  to.setDY(axis - size / 2 - to.getHeight());
  term.setDY(axis - term.getMidHeight());
  long bottom = term.getDY() + term.getHeight() + overhang;
  for (Node4C* const row : {&variable, &from}) {
    row->setDY(below - row->getMidHeight());
    Node4C::max1stDim(bottom, row->getDY() + row->getHeight());
  }
  node->setHeight(bottom);
}

void OperatorProductC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                    long midHeight) const {
  Node4C const& term = *node->child(3);
  long const size = signSize(*node, graphics);
  drawBefore(*node->child(1), equals, graphics, x, y);
  node->selectFont(graphics);
  long const column = term.getDX() - bodyRoom(term, BODY_PRODUCT, graphics).left;
  graphics.drawSign(SIGN_PRODUCT, x + (column - size) / 2, y + midHeight - size / 2, size, size + 1);
  drawBodyBrackets(*node, term, BODY_PRODUCT, graphics, x, y);
}

}  // namespace zolt::catalogue_extended
