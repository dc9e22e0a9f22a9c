#include "zolt/catalogue_extended/operator_derivative.h"

#include "zolt/ved/operators/construct_body.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

constexpr int precedence = 15;  // that of the standard derivative

/// An order begins that far above the lower edge of the upper half of what it raises.
constexpr long order_overlap = 7;

/// The order is shown a second time, after the variable, where it is small: one that holds further orders
/// would be drawn twice as often with each level.
constexpr unsigned long most_repeated_nodes = 24;
wstring const too_long = u"…";

/// Takes the nodes of a subtree off `budget`. False when they are more than it allows.
bool takeNodes(Node4C const& node, unsigned long& budget) {
  if (budget-- == 0) return false;
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (!takeNodes(*node.child(i), budget)) return false;
  }
  return true;
}

bool isRepeated(Node4C const& order) {
  unsigned long budget = most_repeated_nodes;
  return order.numChildren() < budget && takeNodes(order, budget);
}

OperatorWordsS makeWords(wstring const& title, wstring const& label, wstring const& sharedName = {}) {
  OperatorWordsS words;
  words.group = u"Calculus";
  words.title = title;
  words.label = label;
  words.sharedName = sharedName;
  return words;
}

ConstructRowsS rowsOf(bool hasOrder) {
  if (!hasOrder) return {2, 1, 0, {}, ROWS_REVERSED, EXPONENT_AMBIGUOUS};
  return {3, 2, 0, {0}, ROWS_REVERSED, EXPONENT_AMBIGUOUS};
}

}  // namespace

OperatorDerivativeBC::OperatorDerivativeBC(wstring const& name, wstring const& sign, OrderE order,
                                           OperatorWordsS words)
    : ConstructBC(name, name, rowsOf(order == ANY_ORDER), precedence, false, 0), sign_(sign), order_(order) {
  setWords(std::move(words));
}

void OperatorDerivativeBC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const order = order_ == ANY_ORDER ? node->child(0) : nullptr;
  Node4C& variable = *node->child(order ? 1 : 0);
  Node4C& function = *node->child(order ? 2 : 1);
  long const sign = graphics.getTextWidth(sign_);
  long const line = graphics.getTextHeight(sign_);
  auto const room = bodyRoom(function, BODY_OPERAND, graphics);
  // A unit is between the sign and its order.
  long const orderWidth = order ? order->getWidth() + 1 : 0;
  long const raised = order ? Node4C::maxDim(0, order->getHeight() - order_overlap) : 0;

  // The two halves are centred below and above the bar, which overhangs the wider one by a unit.
  long const lower = sign + 2 + variable.getWidth() + orderWidth;
  long const bar = Node4C::maxDim(lower, sign + orderWidth) + 2;
  variable.setDX((bar - lower) / 2 + sign + 2);
  function.setDX(bar + room.left + 1);
  node->setWidth(function.getDX() + function.getWidth() + room.right);
  node->setMidHeight(Node4C::maxDim(line + 1 + raised, function.getMidHeight() + graphics.getMetric(2)));
  function.setDY(node->getMidHeight() - function.getMidHeight());
  variable.setDY(node->getMidHeight() + graphics.getMetric(3) + 1 + raised);
  if (order) {
    order->setDX((bar - sign - orderWidth) / 2 + sign + 1);
    order->setDY(node->getMidHeight() - line - 1 + order_overlap - order->getHeight());
  }
  node->setHeight(Node4C::maxDim(function.getDY() + function.getHeight() + graphics.getMetric(2),
                                 variable.getDY() + variable.getHeight()));
}

void OperatorDerivativeBC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                        long midHeight) const {
  Node4C const* const order = order_ == ANY_ORDER ? node->child(0) : nullptr;
  Node4C const& variable = *node->child(order ? 1 : 0);
  Node4C const& function = *node->child(order ? 2 : 1);
  long const bar = function.getDX() - bodyRoom(function, BODY_OPERAND, graphics).left - 1;
  long const sign = graphics.getTextWidth(sign_);
  graphics.drawHorizontalLine(x, y + midHeight, bar);
  graphics.drawTextAs(TEXT_IS_UPPER_D, sign_, x + (order ? order->getDX() - 1 : (bar + sign) / 2) - sign,
                      y + midHeight - graphics.getTextHeight(sign_) - 1);
  graphics.drawTextAs(TEXT_IS_LOWER_D, sign_, x + variable.getDX() - sign - 2,
                      y + variable.getDY() + variable.getMidHeight() - graphics.getTextMidHeight(sign_));
  drawBodyBrackets(*node, function, BODY_OPERAND, graphics, x, y);
  if (!order) return;
  long const left = x + variable.getDX() + variable.getWidth();
  long const top = y + variable.getDY() + order_overlap - order->getHeight();
  if (isRepeated(*order)) {
    order->display(graphics, left - order->getDX(), top - order->getDY(), nullptr);
  } else {
    order->selectFont(graphics);
    graphics.drawText(too_long, left, top + order->getMidHeight() - graphics.getTextMidHeight(too_long));
  }
}

OperatorDiffnC::OperatorDiffnC()
    : OperatorDerivativeBC(u"diffn", u"d", ANY_ORDER,
                           makeWords(u"derivative of any order", u"dⁿ/dxⁿ", u"diff")) {}

OperatorPdiffC::OperatorPdiffC()
    : OperatorDerivativeBC(u"pdiff", u"∂", FIRST_ORDER, makeWords(u"partial derivative", u"∂/∂x")) {}

OperatorPdiffnC::OperatorPdiffnC()
    : OperatorDerivativeBC(u"pdiffn", u"∂", ANY_ORDER,
                           makeWords(u"partial derivative of any order", u"∂ⁿ/∂xⁿ", u"pdiff")) {}

}  // namespace zolt::catalogue_extended
