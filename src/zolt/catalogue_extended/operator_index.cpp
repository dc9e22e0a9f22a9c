#include "zolt/catalogue_extended/operator_index.h"

#include <utility>

#include "zolt/catalogue_extended/detail/row_line.h"
#include "zolt/ved/operators/construct_body.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/operand_search.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

wstring const index_name = u"index";
wstring const second_name = u"_second_index";
wstring const two_indices = u"2";

}  // namespace

OperatorIndexC::OperatorIndexC() : OperatorIndexC(1) { two_ = new OperatorIndexC(2); }

OperatorIndexC::OperatorIndexC(unsigned long indices)
    : ConstructBC(index_name, index_name, {1 + indices, 0, 1, {1}}, 0, false, 0), indices_(indices) {
  OperatorWordsS words;
  words.group = u"Structures";
  words.title = u"index";
  words.label = u"xᵢ";
  words.aliases = {u"subscript"};
  words.names = {{u"_", {}}};
  if (indices == 1) words.insideSigns = {{u',', second_name}};
  setWords(std::move(words));
}

bool OperatorIndexC::fits(math::algexpr::NodeABC const&, unsigned long numArguments) const {
  return numArguments == 2 || numArguments == 3;
}

OperatorIndexC::RowT OperatorIndexC::fromArguments(math::algexpr::NodeABC const&,
                                                   std::vector<RowT> arguments) const {
  bool const isTwo = arguments.size() == 3;
  return rows::makeConstruct(isTwo ? *two_ : static_cast<OperatorBC const&>(*this), std::move(arguments));
}

wstring OperatorIndexC::getVariant() const { return indices_ == 2 ? two_indices : wstring(); }

PointerTC<OperatorBC> OperatorIndexC::findVariant(wstring const& variant) const {
  return variant == two_indices ? two_ : nullptr;
}

PointerTC<OperatorBC> OperatorIndexC::afterLosingRow(OperatorListC const& operators, Node4C const& construct,
                                                     unsigned long row) const {
  return construct.numChildren() == 3 && row > 0 ? operators.lookup(index_name) : nullptr;
}

void OperatorIndexC::beforeChildrenLayout(Node4C* node, GraphicsABC const&) const {
  for (unsigned long i = 1; i < node->numChildren(); ++i) node->child(i)->increaseFontDepth();
}

void OperatorIndexC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C& base = *node->child(0);
  bool const isBracketed = isLoose(base, BODY_OPERAND);
  long const cell = isBracketed ? graphics.getMetric(1) : 0;
  long const overhang = isBracketed ? graphics.getMetric(2) : 0;
  base.setDX(cell);
  base.setDY(overhang);
  detail::RowLineC line(*node, 1, node->numChildren());
  line.placeFrom(cell + base.getWidth() + cell, graphics);
  node->child(1)->selectFont(graphics);
  long const lineHeight = graphics.getTextHeight(u"M");
  node->selectFont(graphics);

  // The index begins beside the lower half of the last line of its base.
  long const top = base.getDY() + base.getHeight() + overhang - lineHeight + 1;
  line.alignAt(top + line.getAbove());
  node->setWidth(line.getRight());
  node->setMidHeight(base.getDY() + base.getMidHeight());
  node->setHeight(
      Node4C::maxDim(base.getDY() + base.getHeight() + overhang, top + line.getAbove() + line.getBelow()));
}

long OperatorIndexC::getIndexWidth(Node4C const& node) const {
  Node4C const& base = *node.child(0);
  return node.getWidth() - (2 * base.getDX() + base.getWidth());
}

void OperatorIndexC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                  long) const {
  Node4C const& base = *node->child(0);
  if (base.getDX() > 0) {
    graphics.beginsWith(crefFirstText(base));
    graphics.drawBracketPair(x + base.getDX(), y + base.getDY(), base.getWidth(), base.getHeight(), true);
  }
  detail::RowLineC::drawCommas(*node, 1, node->numChildren(), graphics, x, y);
}

bool OperatorIndexC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  if (!insertion.copySelection()) {
    // The operand before the caret is what a selection would be.
    OperandStretchS const left = findLeftOperand(insertion.getCaret());
    if (left.isFound()) {
      insertion.placeCaret(left.near);
      insertion.placeAnchor(left.far);
    }
  }
  if (ConstructBC::runOperator(view)) return true;
  insertion.placeAnchor({});
  return false;
}

OperatorSecondIndexC::OperatorSecondIndexC() : OperatorBC(second_name, second_name, 0, 0, false, false, 0) {}

bool OperatorSecondIndexC::appliesAt(PlaceS const& caret) const {
  Node4C const* const index = enclosingItem(*caret.node);
  return index && index->getType() == NODE4_OPERATOR && index->crefText() == index_name &&
         caret.node->getParent()->findChildNumber() == 1 && isAtRowEnd(caret) &&
         !isEmptyRow(*caret.node->getParent());
}

bool OperatorSecondIndexC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  Node4C* const index = insertion.refEnclosing(index_name);
  auto const registered = insertion.crefOperatorList().lookup(index_name);
  auto const two = registered ? registered->findVariant(two_indices) : nullptr;
  if (!index || !two || !appliesAt(insertion.getCaret())) return false;
  index->insertChild(2, rows::makeEmptyRow().release());
  index->setOperator(two);
  insertion.placeCaret(rowStart(*index->child(2)));
  return true;
}

}  // namespace zolt::catalogue_extended
