#include "zolt/ved/operators/operator_power.h"

#include "zolt/common/signs.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

bool startsWithMinus(Node4C const& operand) {
  Node4C const* item = &operand;
  if (item->getType() == NODE4_LINE) {
    if (item->numChildren() == 0) return false;
    item = item->child(0);
  }
  return item->getType() == NODE4_TEXT && item->sizeText() > 0 && item->crefText()[0] == common::minus_sign;
}

rows::NodeT makePower(rows::NodeT exponentRow) {
  auto power = std::make_unique<Node4C>(NODE4_POWER, nullptr, wstring(), 1);
  power->setChild(0, exponentRow.release());
  return power;
}

}  // namespace

OperatorPowerC::OperatorPowerC(wstring const& name, wstring const& text, int precedence,
                               wstring fixedExponent, bool exponentFlag, bool coreElement, int code)
    : OperatorBC(name, text, fixedExponent.empty() ? 2 : 1, precedence, false, coreElement, code),
      fixedExponent_(std::move(fixedExponent)),
      exponentFlag_(exponentFlag) {}

bool OperatorPowerC::hasFixedExponent() const { return !fixedExponent_.empty() && exponentFlag_; }
bool OperatorPowerC::hasFixedBase() const { return !fixedExponent_.empty() && !exponentFlag_; }

// A power never causes parentheses in what is around it, so its result binds tightest.
std::pair<Node4C*, int> OperatorPowerC::fromAlgebraicNode(algexpr::NodeABC&, ConversionStackT& stack) const {
  rows::NodeT exponent;
  if (hasFixedExponent()) {
    exponent = rows::toRow(rows::makeText(fixedExponent_));
  } else {
    auto [operand, precedence] = rows::popOperand(stack);
    exponent = rows::bracketIf(precedence == getPrecedence(), std::move(operand));
  }
  rows::NodeT base;
  if (hasFixedBase()) {
    base = rows::makeText(fixedExponent_);
  } else {
    auto [operand, precedence] = rows::popOperand(stack);
    bool const looser = precedence > getPrecedence() || startsWithMinus(*operand);
    base = rows::bracketIf(looser, std::move(operand));
  }
  rows::append(*base, makePower(std::move(exponent)));
  return {base.release(), 0};
}

bool OperatorPowerC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  // A selection stays in the row when it becomes the base, and goes into the exponent otherwise.
  if (!(hasFixedExponent() ? insertion.mayNest() : insertion.mayNestSelection())) return false;
  rows::NodeT selection = insertion.cutSelection();
  insertion.splitText(true);
  if (hasFixedExponent()) {
    if (selection) {
      insertion.insertBeforeCaret(rows::makeOpen());
      insertion.insertBeforeCaret(std::move(selection));
      insertion.insertBeforeCaret(rows::makeClose());
    }
    insertion.insertBeforeCaret(makePower(rows::toRow(rows::makeText(fixedExponent_))));
    return true;
  }
  if (hasFixedBase()) insertion.insertBeforeCaret(rows::makeText(fixedExponent_));
  if (!selection) selection = rows::makeEmptyRow();
  Node4C* const exponent = selection.get();
  insertion.insertBeforeCaret(makePower(std::move(selection)));
  insertion.placeCaret(rowEnd(*exponent));
  return true;
}

bool OperatorPowerC::hasOwnRow(unsigned long index) const { return hasFixedBase() || index == 1; }

}  // namespace zolt::math::ved
