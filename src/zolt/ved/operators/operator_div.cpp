#include "zolt/ved/operators/operator_div.h"

#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/operand_search.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

using RowT = rows::NodeT;

bool mayTake(ViewInsertionC& insertion, OperandStretchS const& stretch) {
  if (!stretch.isFound()) return insertion.mayNest();
  insertion.placeAnchor(stretch.far);
  bool const fits = insertion.mayNestSelection();
  insertion.placeAnchor({});
  return fits;
}

// The fraction bar takes the place of brackets that only hold an operand together.
void stripBrackets(ViewInsertionC& insertion, Node4C& row) {
  if (!isWholeGroup(row)) return;
  row.deleteChild(row.numChildren() - 2);
  row.deleteChild(1);
  insertion.checkRow(row);
}

RowT take(ViewInsertionC& insertion, OperandStretchS const& stretch) {
  insertion.placeAnchor({});
  if (!stretch.isFound()) return nullptr;
  insertion.placeAnchor(stretch.far);
  RowT row = insertion.cutSelection();
  if (row && stretch.group) stripBrackets(insertion, *row);
  return row;
}

RowT takeLeft(ViewInsertionC& insertion) {
  PlaceS const caret = insertion.getCaret();
  auto const stretch = findLeftOperand(caret);
  insertion.refCaretNode().refText().erase(stretch.near.pos, caret.pos - stretch.near.pos);
  insertion.placeCaret(stretch.near);
  return take(insertion, stretch);
}

RowT takeRight(ViewInsertionC& insertion) {
  PlaceS const caret = insertion.getCaret();
  wstring& text = insertion.refCaretNode().refText();
  std::size_t blanks = 0;
  while (caret.pos + blanks < text.size() && text[caret.pos + blanks] == u' ') ++blanks;
  text.erase(caret.pos, blanks);
  return take(insertion, findRightOperand(caret));
}

/// Whether a selected stretch begins with a sign, which cannot begin a numerator.
bool startsWithSign(ViewInsertionC const& insertion, Node4C const& row) {
  if (row.numChildren() == 0 || row.child(0)->getType() != NODE4_TEXT) return false;
  auto const op = insertion.crefOperatorList().lookupText(row.child(0)->crefText());
  return op && op->isLinear();
}

}  // namespace

OperatorDivC::OperatorDivC(wstring const& name, wstring const& text, bool coreElement, int code)
    : ConstructBC(name, text, {2}, 0, coreElement, code) {}

void OperatorDivC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C* const numerator = node->child(0);
  Node4C* const denominator = node->child(1);
  long const margin = graphics.getMetric(3);
  // The bar overhangs the wider argument by a unit on each side.
  long const width = Node4C::maxDim(numerator->getWidth(), denominator->getWidth()) + 2;
  node->setWidth(width);
  numerator->setDX((width - numerator->getWidth()) / 2);
  denominator->setDX((width - denominator->getWidth()) / 2);
  numerator->setDY(0);
  node->setMidHeight(numerator->getHeight() + margin / 2 + 1);
  node->setHeight(denominator->getHeight() + (margin + 1) / 2 + node->getMidHeight() + 1);
  denominator->setDY(node->getHeight() - denominator->getHeight());
}

void OperatorDivC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long,
                                long midHeight) const {
  // How the wider argument begins matters where the other one does not reach.
  constexpr long most_shift = 3;
  Node4C const* const rows[] = {node->child(0), node->child(1)};
  bool const wider = rows[0]->getWidth() < rows[1]->getWidth();
  if (rows[!wider]->getDX() >= rows[wider]->getDX() + most_shift) {
    graphics.beginsWith(crefFirstText(*rows[wider]));
  }
  graphics.drawHorizontalLine(x, y + midHeight, width);
}

bool OperatorDivC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  RowT numerator = insertion.copySelection();
  RowT denominator;
  if (!numerator) {
    auto const left = findLeftOperand(insertion.getCaret());
    auto const right = findRightOperand(insertion.getCaret());
    if (!mayTake(insertion, left) || !mayTake(insertion, right)) return false;
  } else {
    // The fraction bar replaces a selected sign between its operands.
    bool const isSign = startsWithSign(insertion, *numerator);
    if (!(isSign ? insertion.mayNestRow() : insertion.mayNestSelection())) return false;
    insertion.deleteSelection();
    if (isSign) numerator.reset();
  }
  if (!numerator) {
    numerator = takeLeft(insertion);
    denominator = takeRight(insertion);
  }

  insertion.splitText(true);
  RowT node = rows::makeConstruct(*this, 2);
  Node4C* const fraction = node.get();
  insertion.insertBeforeCaret(std::move(node));
  if (!denominator) {
    denominator = rows::makeEmptyRow();
    insertion.placeCaret(rowStart(*denominator));
  }
  if (!numerator) {
    numerator = rows::makeEmptyRow();
    insertion.placeCaret(rowStart(*numerator));
  }
  insertion.placeCaret(startOf(insertion.getCaret().node));
  fraction->setChild(0, numerator.release());
  fraction->setChild(1, denominator.release());
  return true;
}

}  // namespace zolt::math::ved
