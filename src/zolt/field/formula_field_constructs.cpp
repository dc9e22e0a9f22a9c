#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/input_places.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

/// Under a decimal comma, ";;" ends a row of a table: what the first of them did is taken back. False, with
/// nothing changed, where no row can end.
bool FormulaFieldC::endTableRow() {
  if (groups_ > 0) return false;
  unsigned long const here = view_.getHistoryPosition();
  SelectionPathS const now = saveSelection();
  while (view_.getHistoryPosition() > separatedFrom_ && view_.undo()) {
  }
  restoreSelection(separatedAt_);
  InputOptionsS options = options_;
  options.decimalComma = false;
  InputDecisionS const decision = decideInput(view_, u';', options);
  if (decision.kind == INPUT_OPERATOR && actOn(decision)) return true;
  while (view_.getHistoryPosition() < here && view_.redo()) {
  }
  restoreSelection(now);
  return false;
}

/// Makes one construct of the one before the caret and the one in it, both of which the same sign has just
/// ended: a norm of the bars in "||x||".
void FormulaFieldC::mergeDoubled(char16_t sign) {
  auto const op = options_.constructs ? findDoubled(caret(), sign, view_.crefOperatorList()) : nullptr;
  if (!op) return;
  Node4C const& outer = *caret().node->goLeft();
  std::vector<rows::NodeT> content;
  content.push_back(view_.copyRow(wholeRow(*outer.child(0)->child(1)->child(0))));
  auto const merged = writeBytes(*rows::toRow(rows::makeConstruct(*op, std::move(content))));
  GroupC group(*this);
  group.end(select({endOf(outer.goLeft()), caret()}) && view_.paste(merged));
}

bool FormulaFieldC::replaceCall(ConstructReplacementS const& replacement) {
  std::vector<std::pair<bytestring, unsigned long>> contents;
  for (auto const& [range, row] : replacement.contents) {
    if (range.anchor == range.caret) continue;
    view_.copy(range, contents.emplace_back(bytestring(), row).first);
  }
  GroupC group(*this);
  // Inserted by its name an operator might take the operand before it.
  auto const inserted = rows::toRow(
      rows::makeConstruct(*replacement.op, std::vector<rows::NodeT>(replacement.op->getInsertedRows())));
  inserted->checkTree();
  bool done = deleteRange(replacement.begin, replacement.end) && view_.paste(writeBytes(*inserted));
  Node4C const* const construct = done ? caret().node->goLeft() : nullptr;
  if (!construct || construct->getType() != NODE4_OPERATOR) return group.end(false);
  TreePathT const path = pathOf(*construct);
  auto const enter = [&](unsigned long row) {
    Node4C const* const node = nodeAt(view_.crefRoot(), path);
    return node && row < node->numChildren() && placeCaret(rowEnd(*node->child(row)));
  };
  for (auto const& [content, row] : contents) done = done && enter(row) && view_.paste(content);
  if (!replacement.mark.empty())
    done = done && enter(replacement.markRow) && view_.insertText(replacement.mark);
  if (replacement.caretRow != ConstructReplacementS::after_construct)
    return group.end(done && enter(replacement.caretRow));
  Node4C const* const made = done ? nodeAt(view_.crefRoot(), path) : nullptr;
  return group.end(made && placeCaret(placeAfter(*made)));
}

}  // namespace zolt::field
