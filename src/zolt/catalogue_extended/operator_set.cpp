#include "zolt/catalogue_extended/operator_set.h"

#include <utility>

#include "zolt/catalogue_extended/detail/row_line.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

wstring const set_name = u"set";
wstring const element_name = u"_element";

}  // namespace

OperatorSetC::OperatorSetC()
    : ConstructBC(set_name, set_name, {0, 0, 0, {}, ROWS_LIKE_ARGUMENTS, EXPONENT_OF_CONSTRUCT, 1}, 0, false,
                  0) {
  OperatorWordsS words;
  words.group = u"Sets";
  words.title = u"set";
  words.label = u"{a}";
  words.shortcut = u"{";
  words.aliases = {u"lbrace"};
  words.signs = u"{";
  words.closingSign = u'}';
  words.insideSigns = {{u',', element_name}};
  setWords(std::move(words));
}

bool OperatorSetC::fits(math::algexpr::NodeABC const&, unsigned long numArguments) const {
  return numArguments > 0 && numArguments <= limits::max_listed_rows;
}

PointerTC<OperatorBC> OperatorSetC::afterLosingRow(OperatorListC const& operators, Node4C const& construct,
                                                   unsigned long) const {
  return construct.numChildren() > 1 ? operators.lookup(set_name) : nullptr;
}

void OperatorSetC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long const cell = graphics.getMetric(1);
  long const overhang = graphics.getMetric(2);
  detail::RowLineC line(*node, 0, node->numChildren());
  line.placeFrom(cell, graphics);
  line.alignAt(overhang + line.getAbove());
  node->setWidth(line.getRight() + cell);
  node->setMidHeight(overhang + line.getAbove());
  node->setHeight(line.getAbove() + line.getBelow() + 2 * overhang);
}

void OperatorSetC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                long height, long) const {
  long const cell = graphics.getMetric(1);
  graphics.drawSign(SIGN_OPEN_BRACE, x, y, cell, height);
  graphics.drawSign(SIGN_CLOSE_BRACE, x + width - cell, y, cell, height);
  detail::RowLineC::drawCommas(*node, 0, node->numChildren(), graphics, x, y);
}

OperatorElementC::OperatorElementC() : OperatorBC(element_name, element_name, 0, 0, false, false, 0) {}

bool OperatorElementC::appliesAt(PlaceS const& caret) const {
  Node4C const* const set = enclosingItem(*caret.node);
  return set && set->getType() == NODE4_OPERATOR && set->crefText() == set_name;
}

bool OperatorElementC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  Node4C* const set = insertion.refEnclosing(set_name);
  if (!appliesAt(insertion.getCaret()) || set->numChildren() >= limits::max_listed_rows) return false;
  if (!insertion.deleteSelection()) return false;
  insertion.splitText(true);
  Node4C& row = *insertion.getCaret().node->getParent();
  unsigned long const first = insertion.getCaret().node->findChildNumber();
  rows::NodeT element = std::make_unique<Node4C>(NODE4_LINE, nullptr, wstring(), 0);
  while (row.numChildren() > first) {
    Node4C* const item = row.child(first);
    row.removeChild(first);
    rows::append(*element, rows::NodeT(item));
  }
  unsigned long const number = row.findChildNumber() + 1;
  set->insertChild(number, element.release());
  insertion.placeCaret(rowStart(*set->child(number)));
  return true;
}

}  // namespace zolt::catalogue_extended
