#include "zolt/ved/operators/operator_power.h"

#include "zolt/ved/operators/detail/operands.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

constexpr char16_t minus_sign = u'\u2212';

bool startsWithMinus(Node4C const& operand) {
  Node4C const* item = &operand;
  if (item->getType() == NODE4_LINE) {
    if (item->numChildren() == 0) return false;
    item = item->child(0);
  }
  return item->getType() == NODE4_TEXT && item->sizeText() > 0 && item->crefText()[0] == minus_sign;
}

Node4C* makePower(Node4C* exponentRow) {
  auto* power = new Node4C(NODE4_POWER, nullptr, wstring(), 1);
  power->setChild(0, exponentRow);
  return power;
}

}  // namespace

OperatorPowerC::OperatorPowerC(wstring const& name, wstring const& text, int precedence,
                               wstring fixedExponent, bool exponentFlag, bool coreElement, int code)
    : OperatorBC(name, text, fixedExponent.empty() ? 2 : 1, precedence, false, coreElement, code),
      fixedExponent_(std::move(fixedExponent)),
      exponentFlag_(exponentFlag) {}

OperatorPowerC::~OperatorPowerC() = default;

bool OperatorPowerC::hasFixedExponent() const { return !fixedExponent_.empty() && exponentFlag_; }
bool OperatorPowerC::hasFixedBase() const { return !fixedExponent_.empty() && !exponentFlag_; }

// A power never causes parentheses in what stands around it, so its result binds tightest.
std::pair<Node4C*, int> OperatorPowerC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  Node4C* exponent = nullptr;
  if (hasFixedExponent()) {
    exponent = detail::makeText(fixedExponent_)->inLine();
  } else {
    auto const [operand, precedence] = detail::popOperand(stack);
    exponent = precedence == getPrecedence() ? detail::bracket(operand) : operand->inLine();
  }
  if (hasFixedBase()) {
    Node4C* const base = detail::makeText(fixedExponent_);
    detail::append(*base, makePower(exponent));
    return {base, 0};
  }
  auto const [operand, precedence] = detail::popOperand(stack);
  bool const bracketed = precedence > getPrecedence() || startsWithMinus(*operand);
  Node4C* const base = bracketed ? detail::bracket(operand) : operand->inLine();
  detail::append(*base, makePower(exponent));
  return {base, 0};
}

// The exponent is an item of its own kind, which the row places.
void OperatorPowerC::layoutNode4(Node4C*, GraphicsABC const&) const {}
void OperatorPowerC::displayNode4(Node4C*, GraphicsABC const&, long, long, long, long, long) const {}

bool OperatorPowerC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  // A selection stays in the row when it becomes the base, and goes into the exponent otherwise.
  if (!(hasFixedExponent() ? insertion.mayNest() : insertion.mayNestSelection())) return false;
  std::unique_ptr<Node4C> selection = insertion.cutSelection();
  insertion.splitText(true);
  auto const insertItem = [&](Node4C* item) { insertion.insertBeforeCaret(std::unique_ptr<Node4C>(item)); };
  if (hasFixedExponent()) {
    if (selection) {
      insertItem(detail::makeItem(NODE4_OPEN));
      insertItem(selection.release());
      insertItem(detail::makeItem(NODE4_CLOSE));
    }
    insertItem(makePower(detail::makeText(fixedExponent_)->inLine()));
    return true;
  }
  if (hasFixedBase()) insertItem(detail::makeText(fixedExponent_));
  Node4C* const exponent = selection ? selection.release() : detail::makeEmptyRow();
  insertItem(makePower(exponent));
  insertion.placeCaretAtEnd(exponent);
  return true;
}

bool OperatorPowerC::hasOwnRow(unsigned long index) const { return hasFixedBase() || index == 1; }

}  // namespace zolt::math::ved
