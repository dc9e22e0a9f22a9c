#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/input_places.h"
#include "zolt/field/detail/operand_ends.h"
#include "zolt/field/detail/typed_bounds.h"
#include "zolt/field/detail/typed_calculus.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/range_copy.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

/// Under a decimal comma, ";;" ends a row of a table: what the first of them did is taken back. False, with
/// nothing changed, where no row can end.
bool FormulaFieldC::endTableRow(LastInputS const& last) {
  if (groups_ > 0) return false;
  unsigned long const here = view_.getHistoryPosition();
  SelectionPathS const now = saveSelection();
  while (view_.getHistoryPosition() > last.historyBefore && view_.undo()) {
  }
  restoreSelection(last.selectionBefore);
  InputOptionsS options = options_;
  options.decimalComma = false;
  InputDecisionS const decision = decideInput(view_, u';', options);
  if (decision.kind == INPUT_OPERATOR && actOn(decision)) return true;
  while (view_.getHistoryPosition() < here && view_.redo()) {
  }
  restoreSelection(now);
  return false;
}

bool FormulaFieldC::insertFraction() {
  SelectionS const stretch = inOneRow(view_.getSelection());
  OperatorListC const& operators = view_.crefOperatorList();
  bool const isSigned = view_.isSelected() && (beginsWithSign(stretch, operators) ||
                                               startOfPartial(stretch.caret) == stretch.anchor);
  if (!isSigned) return view_.insertText(u"/");
  ConstructReplacementS fraction;
  fraction.op = view_.crefOperatorList().lookup(u"/");
  fraction.begin = stretch.anchor;
  fraction.end = stretch.caret;
  fraction.contents = {{stretch, 0}};
  fraction.caretRow = 1;
  return fraction.op && replaceCall(fraction);
}

/// Makes one construct of the one before the caret and the one in it, both of which the same sign has just
/// ended: a norm of the bars in "||x||".
void FormulaFieldC::mergeDoubled(char16_t sign) {
  auto const op = options_.constructs ? findDoubled(caret(), sign, view_.crefOperatorList()) : nullptr;
  if (!op) return;
  Node4C const& outer = *caret().node->goLeft();
  std::vector<rows::NodeT> content;
  content.push_back(copyRow(wholeRow(*outer.child(0)->child(1)->child(0)), view_.crefOperatorList()));
  auto const merged = writeBytes(*rows::toRow(rows::makeConstruct(*op, std::move(content))));
  GroupC group(*this);
  group.end(select({endOf(outer.goLeft()), caret()}) && view_.paste(merged));
}

/// What braces have just closed, as in LaTeX: those that only hold an exponent, "x^{n+1}", vanish, and an
/// index of one word is a part of the name, "x_{max}".
void FormulaFieldC::closeGroup() {
  PlaceS const at = caret();
  Node4C const* const item = at.pos == 0 ? at.node->goLeft() : nullptr;
  if (!options_.grouping || !item || item->getType() != NODE4_OPERATOR) return;
  Node4C const* const power = enclosingItem(*at.node);
  bool const isHeld = power && power->getType() == NODE4_POWER && item->numChildren() == 1 &&
                      item->crefOperator()->crefWords().closingSign == u'}';
  SelectionS const row = wholeRow(*at.node->getParent());
  GroupC group(*this);
  if (isHeld && row.anchor == placeBefore(*item) && row.caret == at) {
    PlacePathS const after = pathOf(placeAfter(*power));
    bytestring content;
    view_.copy(wholeRow(*item->child(0)), content);
    last_.ungrouped = select(row) && view_.paste(content) && placeCaret(placeAt(view_.crefRoot(), after));
    group.end(last_.ungrouped);
    return;
  }
  bool const isIndex = item->crefOperator() == findConstruct(view_.crefOperatorList(), u"_").op.get() &&
                       item->numChildren() == 2 && isWord(*item->child(0)) && isWord(*item->child(1));
  if (!isIndex) return static_cast<void>(group.end(true));
  wstring const name = item->child(0)->child(0)->crefText() + u'_' + item->child(1)->child(0)->crefText();
  group.end(deleteRange(placeBefore(*item), at) && view_.insertText(name));
}

/// A word in braces that were taken for brackets is an index, "x_{max}".
void FormulaFieldC::closeIndex() {
  Node4C const* const close = caret().pos == 0 ? caret().node->goLeft() : nullptr;
  Node4C const* const open = close && isClosingBracket(close->getType()) ? findPartner(*close) : nullptr;
  PlaceS const end = open ? placeBefore(*open) : PlaceS();
  if (!end || !endsWithIndexSign(end)) return;
  wstring const name = end.node->crefText().substr(nameStart(end.node->crefText(), end.pos));
  if (findMarkable(view_.crefOperatorList(), name)) completed_ = COMPLETED_FUNCTION;
  wstring const word = open->goRight()->crefText();
  bool const isPart = word.size() > 1 && word.find(math::common::pi_sign) != wstring::npos;
  bool const isWhole = open->goRight()->goRight() == close && !word.empty() && !isPart;
  if (!options_.grouping || !isWhole || !std::all_of(word.begin(), word.end(), isWordCharacter)) return;
  GroupC group(*this);
  group.end(deleteRange(end, caret()) && view_.insertText(word));
}

/// A bar that no other one has closed when the brackets or braces around it are closed, or their next part
/// begins, is the sign of a condition, as in plain text: "P(A|B)".
void FormulaFieldC::separateByBar(char16_t closing) {
  if (closing != u')' && closing != u'}' && closing != u',') return;
  OperatorListC const& operators = view_.crefOperatorList();
  Node4C const* const item = bars_.back().construct;
  PlaceS inside = caret();
  while (inside && enclosingItem(*inside.node) != item) inside = afterFinishedItem(inside);
  if (!inside || !isAtRowEnd(inside) || findOpenBracket(inside)) return;
  PlaceS const before = placeBefore(*item);
  Node4C const* const around = enclosingItem(*before.node);
  bool const isBraced = around && around->getType() == NODE4_OPERATOR && !findOpenBracket(before) &&
                        around->crefOperator()->crefWords().closingSign == u'}';
  bool const isBracketed = findOpenBracket(before);
  bool const isEnded = closing == u')' ? isBracketed : closing == u'}' ? isBraced : isBracketed || isBraced;
  auto const op = operators.lookup(u"given");
  if (!op || !isEnded || !endsOperandBefore(before, operators)) return;
  PlacePathS const start = pathOf(before);
  completeName();
  PlaceS const again = placeAt(view_.crefRoot(), start);
  Node4C const& bars = *again.node->goRight();
  bytestring content;
  view_.copy(wholeRow(*bars.child(0)), content);
  GroupC group(*this);
  group.end(select({again, placeAfter(bars)}) && view_.insertText(op->getText()) && view_.paste(content));
}

/// What is typed of derivatives and integrals as they are printed. False when it is nothing of them.
bool FormulaFieldC::replaceCalculus(InputDecisionS const& decision, char16_t c) {
  bool const isText = decision.kind == INPUT_TEXT;
  bool const isMove = decision.kind == INPUT_MOVE && c == u' ';
  // All of it is in a construct or after one.
  bool const isPossible = enclosingItem(*caret().node) || caret().node->goLeft();
  if (!options_.constructs || !isPossible || !(isText || isMove)) return false;
  TypedBoundsS bounds{};
  ConstructReplacementS const found = findCalculus(view_, isText ? decision.text[0] : u' ', bounds);
  if (!found.op || !replaceCall(found)) return false;
  bounds.construct = enclosingItem(*caret().node);
  bounds_.push_back(bounds);
  return true;
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
  for (auto const& [text, row] : replacement.marks) done = done && enter(row) && view_.insertText(text);
  if (replacement.caretRow != ConstructReplacementS::after_construct)
    return group.end(done && enter(replacement.caretRow));
  Node4C const* const made = done ? nodeAt(view_.crefRoot(), path) : nullptr;
  return group.end(made && placeCaret(placeAfter(*made)));
}

}  // namespace zolt::field
