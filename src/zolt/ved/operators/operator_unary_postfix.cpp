#include "zolt/ved/operators/operator_unary_postfix.h"

#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

bool endsWithPower(Node4C const& row) {
  unsigned long last = row.numChildren() - 1;
  if (last > 0 && row.child(last)->getType() == NODE4_TEXT && row.child(last)->sizeText() == 0) --last;
  return row.child(last)->getType() == NODE4_POWER;
}

}  // namespace

OperatorUnaryPostfixC::OperatorUnaryPostfixC(wstring const& name, wstring const& text, int precedence,
                                             bool coreElement, int code)
    : OperatorBC(name, text, 1, precedence, true, coreElement, code) {}

std::pair<Node4C*, int> OperatorUnaryPostfixC::fromAlgebraicNode(algexpr::NodeABC&,
                                                                 ConversionStackT& stack) const {
  rows::NodeT row = rows::popRow(stack, getPrecedence());
  // A factorial after a power is that of the exponent; makers of expressions bracket the power where they
  // mean it.
  if (crefName() != u"!" && endsWithPower(*row)) row = rows::bracket(std::move(row));
  rows::append(*row, rows::makeText(crefText()));
  return {row.release(), getPrecedence()};
}

bool OperatorUnaryPostfixC::runOperator(ViewZNT4C& view) const {
  // The caret goes after the first character of the sign, whatever its length.
  ViewInsertionC insertion(view);
  PlaceS const caret = insertion.getCaret();
  insertion.insertText(crefText());
  insertion.placeCaret({caret.node, caret.pos + 1});
  return true;
}

}  // namespace zolt::math::ved
