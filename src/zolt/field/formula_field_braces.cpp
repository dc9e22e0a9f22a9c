// Rows of constructs that are typed in braces or square brackets, as in LaTeX: "\frac{1}{x^2+1}".

#include "zolt/exchange/latex.h"
#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/typed_bounds.h"
#include "zolt/field/detail/typed_calculus.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

/// The row of the construct that a node is in; null: it is in none.
Node4C const* findRow(Node4C const& node, Node4C const* construct) {
  Node4C const* inside = &node;
  for (Node4C const* item = enclosingItem(node); item; inside = item, item = enclosingItem(*item)) {
    if (item == construct) return inside->getParent();
  }
  return nullptr;
}

}  // namespace

bool FormulaFieldC::openBraces(TypedGroupS group) {
  bracesExpected_ = false;
  braces_.push_back(group);
  return true;
}

/// Puts what the construct around the caret becomes before square brackets in its place, "\sqrt[".
bool FormulaFieldC::insertIndexed(OperatorBC const& op) {
  ConstructReplacementS call;
  call.op = view_.crefOperatorList().lookup(op.crefWords().indexedName);
  Node4C const* const item = enclosingItem(*caret().node);
  if (!call.op || !item || item->crefOperator() != &op) return false;
  call.begin = placeBefore(*item);
  call.end = placeAfter(*item);
  return replaceCall(call);
}

/// Doubles a stroke of the letter before the caret, if there is such a letter: "ℝ".
void FormulaFieldC::strikeLetter() {
  PlaceS const end = caret();
  PlaceS const begin{end.node, end.pos > 0 ? end.pos - 1 : 0};
  wstring const letter = end.node->crefText().substr(begin.pos, end.pos - begin.pos);
  auto const read = exchange::fromLatex(u"\\mathbb{" + letter + u"}", nullptr);
  GroupC group(*this);
  group.end(!read || (deleteRange(begin, end) && view_.insertText(read->getNode()->getName())));
}

/// To the next row of the construct whose row was written in braces, or out of it. False when the sign closes
/// something else.
bool FormulaFieldC::closeBraces(char16_t sign) {
  if (braces_.empty() || braces_.back().close != sign) return false;
  completeName();
  auto const [kind, close, construct] = braces_.back();
  if (kind != TypedGroupS::ROW) braces_.pop_back();
  if (kind == TypedGroupS::ARGUMENT) return typeCharacter(u')');
  if (kind == TypedGroupS::STRUCK) strikeLetter();
  if (kind != TypedGroupS::ROW) return kind != TypedGroupS::INDEX;
  Node4C const* const row = findRow(*caret().node, construct);
  if (!row) return false;
  PlaceS at = caret();
  for (Node4C const* item = enclosingItem(*at.node); item != construct; item = enclosingItem(*item)) {
    if (findOpenBracket(at)) return false;
    at = placeAfter(*item);
    OperatorBC const* const op = item->getType() == NODE4_OPERATOR ? item->crefOperator() : nullptr;
    bool const isBound = !bounds_.empty() && bounds_.back().construct == item && bounds_.back().close == sign;
    if (isBound || (op && op->crefWords().closingSign == sign)) return false;
  }
  if (findOpenBracket(at)) return false;
  return leaveRow(*row, *construct);
}

/// To the next row of a construct, which is typed like the one that ends, or out of it.
bool FormulaFieldC::leaveRow(Node4C const& row, Node4C const& construct) {
  bool const isShort = braces_.back().kind == TypedGroupS::SHORT_ROW;
  braces_.pop_back();
  if (Node4C const* const next = row.goRight()) {
    bracesExpected_ = true;
    if (isShort) braces_.push_back({TypedGroupS::SHORT_ROW, u'\0', &construct});
    return placeCaret(rowEnd(*next));
  }
  ConstructReplacementS const derivative = findFilledDerivative(view_.crefOperatorList(), construct);
  return placeCaret(placeAfter(construct)) && (!derivative.op || replaceCall(derivative));
}

/// Types a letter or digit into a row that takes no more.
bool FormulaFieldC::typeShortRow(char16_t c) {
  Node4C const* const construct = braces_.back().construct;
  Node4C const* const row = findRow(*caret().node, construct);
  return row && view_.insertText(wstring(1, c)) && leaveRow(*row, *construct);
}

/// No sign but the closing one leads out of braces. Null: the caret is at the place.
PlaceS FormulaFieldC::keepInBraces(PlaceS target) const {
  Node4C const* const construct = braces_.empty() ? nullptr : braces_.back().construct;
  if (!target || !construct) return target;
  Node4C const* const row = findRow(*caret().node, construct);
  if (!row || findRow(*target.node, construct) == row) return target;
  PlaceS const end = rowEnd(*row);
  return end == caret() ? PlaceS() : end;
}

/// What a character does at the caret; `step`: to the bounds around it.
InputDecisionS FormulaFieldC::decide(char16_t c, BoundsStepS& step) const {
  InputDecisionS decision = decideInBounds(view_, c, options_, bounds_, step);
  if (step.target && keepInBraces(step.target) != step.target) {
    step = {};
    decision = decideInput(view_, c, options_);
  }
  PlaceS const kept = keepInBraces(decision.target);
  if (kept == decision.target) return decision;
  decision.target = kept;
  if (!kept && decision.kind == INPUT_MOVE) return {INPUT_TEXT, wstring(1, c), {}, {}};
  if (decision.begin) decision.begin = startOfDividend(kept ? kept : caret(), view_.crefOperatorList());
  return decision;
}

/// How names are completed at the caret: what is in braces as one name stays one.
InputOptionsS FormulaFieldC::nameOptions() const {
  InputOptionsS options = options_;
  bool const isWhole = !braces_.empty() && braces_.back().kind >= TypedGroupS::INDEX;
  options.singleLetters = options.singleLetters && !isWhole;
  return options;
}

}  // namespace zolt::field
