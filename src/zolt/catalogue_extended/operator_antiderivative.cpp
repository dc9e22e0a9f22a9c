#include "zolt/catalogue_extended/operator_antiderivative.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

// The width of the sign's column, with the unit that separates it from the integrand.
constexpr long sign_width = 6;
wstring const differential = u"d";

}  // namespace

OperatorAntiderivativeC::OperatorAntiderivativeC()
    : ConstructBC(u"antiderivative", u"antiderivative",
                  {2, 0, 0, {}, ROWS_LIKE_ARGUMENTS, EXPONENT_AMBIGUOUS}, 0, false, 0) {
  OperatorWordsS words;
  words.group = u"Calculus";
  words.title = u"indefinite integral";
  words.label = u"∫";
  words.shortcut = u"primitive(";
  words.names = {{u"primitive", {}}};
  words.aliases = {u"int"};
  words.sharedName = u"integral";
  setWords(words);
}

void OperatorAntiderivativeC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C& integrand = *node->child(0);
  Node4C& variable = *node->child(1);
  long const gap = graphics.getMetric(0);
  // The sign is higher than what it stands before, and as high as two lines.
  long const least = graphics.getTextHeight(differential);
  long const margin = 2 * graphics.getMetric(3);
  long const above = Node4C::maxDim(least, integrand.getMidHeight() + margin);
  long const below = Node4C::maxDim(least, integrand.getHeight() - integrand.getMidHeight() + margin);
  integrand.setDX(sign_width + gap);
  integrand.setDY(above - integrand.getMidHeight());
  variable.setDX(integrand.getDX() + integrand.getWidth() + graphics.getTextWidth(differential) + 2 * gap);
  variable.setDY(above - variable.getMidHeight());
  node->setWidth(variable.getDX() + variable.getWidth());
  node->setMidHeight(above);
  node->setHeight(Node4C::maxDim(above + below, variable.getDY() + variable.getHeight()));
}

void OperatorAntiderivativeC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long,
                                           long height, long midHeight) const {
  graphics.drawSign(SIGN_INTEGRAL, x, y, sign_width - 1, height);
  graphics.drawTextAs(
      TEXT_IS_INTEGRAL_D, differential,
      x + node->child(1)->getDX() - graphics.getMetric(0) - graphics.getTextWidth(differential),
      y + midHeight - graphics.getTextMidHeight(differential));
}

}  // namespace zolt::catalogue_extended
