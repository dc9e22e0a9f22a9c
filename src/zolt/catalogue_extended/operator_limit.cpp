#include "zolt/catalogue_extended/operator_limit.h"

#include <utility>

#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/ved/operators/construct_body.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

wstring const limit_name = u"limit";
wstring const both_sides_name = u"_limit_both";
wstring const sign_text = u"lim";
wstring const arrow = u"→";
wstring const minus = {math::common::minus_sign};

enum RowE { ROW_VARIABLE, ROW_PLACE, ROW_TERM };

/// The number that an expression has for a side.
wstring numberOf(OperatorLimitC::SideE side) {
  return side == OperatorLimitC::FROM_BELOW ? minus + u"1" : wstring(u"1");
}

wstring markOf(OperatorLimitC::SideE side) {
  return side == OperatorLimitC::BOTH_SIDES ? wstring() : side == OperatorLimitC::FROM_BELOW ? minus : u"+";
}

/// The limit whose place, where the variable goes, holds `node` as an item of its own row; null elsewhere.
Node4C const* findLimitOfPlace(Node4C const& node) {
  Node4C const* const limit = enclosingItem(node);
  bool const isPlace = limit && limit->getType() == NODE4_OPERATOR && limit->crefText() == limit_name &&
                       node.getParent()->findChildNumber() == ROW_PLACE;
  return isPlace ? limit : nullptr;
}

/// The exponent that the place is in when it is empty and at the end of a limit's place; null elsewhere.
Node4C const* findEmptyExponent(PlaceS at) {
  Node4C const* const power = enclosingItem(*at.node);
  bool const isEmpty = power && power->getType() == NODE4_POWER && isEmptyRow(*at.node->getParent());
  return isEmpty && findLimitOfPlace(*power) && isAtRowEnd(placeAfter(*power)) ? power : nullptr;
}

/// The side that a sign at the end of the place's text stands for.
OperatorLimitC::SideE findTypedSide(PlaceS at) {
  if (at.pos == 0 || !isAtRowEnd(at)) return OperatorLimitC::BOTH_SIDES;
  char16_t const last = at.node->crefText()[at.pos - 1];
  bool const isAlone = at.pos == 1 && !at.node->goLeft();
  if (isAlone) return OperatorLimitC::BOTH_SIDES;
  return last == u'+'                  ? OperatorLimitC::FROM_ABOVE
         : math::common::isMinus(last) ? OperatorLimitC::FROM_BELOW
                                       : OperatorLimitC::BOTH_SIDES;
}

}  // namespace

OperatorLimitC::OperatorLimitC() : OperatorLimitC(BOTH_SIDES) {
  below_ = new OperatorLimitC(FROM_BELOW);
  above_ = new OperatorLimitC(FROM_ABOVE);
}

OperatorLimitC::OperatorLimitC(SideE side)
    : ConstructBC(limit_name, limit_name, {3, 2, 0, {0, 1}, ROWS_LIKE_ARGUMENTS, EXPONENT_AMBIGUOUS}, 0,
                  false, 0),
      side_(side) {
  OperatorWordsS words;
  words.group = u"Calculus";
  words.title = u"limit";
  words.label = u"lim";
  words.shortcut = u"lim(";
  words.names = {{u"lim", {}}};
  words.typedRows = {ROW_VARIABLE, ROW_PLACE, ROW_TERM};
  words.valueRow = ROW_PLACE;
  words.valueSign = arrow[0];
  words.lowerRows = 2;
  words.insideSigns = {{u'+', OperatorLimitSideC::nameOf(FROM_ABOVE)},
                       {u'-', OperatorLimitSideC::nameOf(FROM_BELOW)},
                       {u',', OperatorLimitSideC::nameOf(BOTH_SIDES)},
                       {u'\b', both_sides_name}};
  setWords(std::move(words));
}

bool OperatorLimitC::fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const {
  if (numArguments != 4) return numArguments == 3;
  wstring const& side = node.asParent()->child(3).crefName();
  return side == numberOf(FROM_BELOW) || side == numberOf(FROM_ABOVE);
}

OperatorLimitC::RowT OperatorLimitC::fromArguments(math::algexpr::NodeABC const& node,
                                                   std::vector<RowT> arguments) const {
  bool const hasSide = arguments.size() == 4;
  bool const isBelow = hasSide && node.asParent()->child(3).crefName() == numberOf(FROM_BELOW);
  std::vector<RowT> rows;
  for (unsigned long const i : {1UL, 2UL, 0UL}) rows.push_back(std::move(arguments[i]));
  auto const& variant = isBelow ? below_ : above_;
  return rows::makeConstruct(hasSide ? *variant : static_cast<OperatorBC const&>(*this), std::move(rows));
}

wstring OperatorLimitC::arrangeArgumentList(std::vector<wstring> const& rows) const {
  std::vector<wstring> arguments;
  for (unsigned long const row : {ROW_TERM, ROW_VARIABLE, ROW_PLACE}) {
    if (row < rows.size()) arguments.push_back(rows[row]);
  }
  if (side_ != BOTH_SIDES) arguments.push_back(numberOf(side_));
  return OperatorBC::arrangeArgumentList(arguments);
}

wstring OperatorLimitC::getVariant() const {
  return side_ == BOTH_SIDES ? wstring() : side_ == FROM_BELOW ? u"-" : u"+";
}

PointerTC<OperatorBC> OperatorLimitC::findVariant(wstring const& variant) const {
  return variant == u"-" ? below_ : variant == u"+" ? above_ : nullptr;
}

void OperatorLimitC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  Node4C& variable = *node->child(ROW_VARIABLE);
  Node4C& place = *node->child(ROW_PLACE);
  Node4C& term = *node->child(ROW_TERM);
  variable.selectFont(graphics);
  long const arrowWidth = graphics.getTextWidth(arrow);
  graphics.selectFont(variable.getFontDepth() + 1);
  long const mark = side_ == BOTH_SIDES ? 0 : graphics.getTextWidth(markOf(side_));
  node->selectFont(graphics);
  auto const room = bodyRoom(term, BODY_PRODUCT, graphics);
  long const overhang = graphics.getMetric(2);
  long const sign = graphics.getTextWidth(sign_text);

  long const lower = variable.getWidth() + arrowWidth + place.getWidth() + mark;
  long const column = Node4C::maxDim(lower, sign);
  variable.setDX((column - lower) / 2);
  place.setDX(variable.getDX() + variable.getWidth() + arrowWidth);
  term.setDX(column + room.left);
  node->setWidth(term.getDX() + term.getWidth() + room.right);

  long const signAxis = graphics.getTextMidHeight(sign_text);
  long const axis = Node4C::maxDim(signAxis, overhang + term.getMidHeight());
  node->setMidHeight(axis);
  term.setDY(axis - term.getMidHeight());
  long const lowerAxis = axis - signAxis + graphics.getTextHeight(sign_text) +
                         Node4C::maxDim(variable.getMidHeight(), place.getMidHeight());
  long bottom = term.getDY() + term.getHeight() + overhang;
  for (Node4C* const row : {&variable, &place}) {
    row->setDY(lowerAxis - row->getMidHeight());
    Node4C::max1stDim(bottom, row->getDY() + row->getHeight());
  }
  node->setHeight(bottom);
}

void OperatorLimitC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long, long,
                                  long midHeight) const {
  Node4C const& place = *node->child(ROW_PLACE);
  Node4C const& term = *node->child(ROW_TERM);
  long const column = term.getDX() - bodyRoom(term, BODY_PRODUCT, graphics).left;
  graphics.drawText(sign_text, x + (column - graphics.getTextWidth(sign_text)) / 2,
                    y + midHeight - graphics.getTextMidHeight(sign_text));
  drawBodyBrackets(*node, term, BODY_PRODUCT, graphics, x, y);
  place.selectFont(graphics);
  drawBefore(place, arrow, graphics, x, y);
  if (side_ == BOTH_SIDES) return;
  graphics.selectFont(place.getFontDepth() + 1);
  wstring const mark = markOf(side_);
  graphics.drawText(mark, x + place.getDX() + place.getWidth(),
                    y + place.getDY() + place.getMidHeight() - graphics.getTextHeight(mark) + 1);
}

OperatorLimitSideC::OperatorLimitSideC(OperatorLimitC::SideE side)
    : OperatorBC(nameOf(side), nameOf(side), 0, 0, false, false, 0), side_(side) {
  if (side == OperatorLimitC::BOTH_SIDES) return;
  bool const isBelow = side == OperatorLimitC::FROM_BELOW;
  OperatorWordsS words;
  words.group = u"Calculus";
  words.title = isBelow ? u"limit from below" : u"limit from above";
  words.label = isBelow ? u"lim⁻" : u"lim⁺";
  words.shortcut = isBelow ? u"lim(x->a^-" : u"lim(x->a^+";
  words.aliases = {isBelow ? u"left limit" : u"right limit"};
  setWords(std::move(words));
}

wstring OperatorLimitSideC::nameOf(OperatorLimitC::SideE side) {
  return side == OperatorLimitC::BOTH_SIDES   ? u"_limit_side"
         : side == OperatorLimitC::FROM_BELOW ? u"_limit_below"
                                              : u"_limit_above";
}

bool OperatorLimitSideC::appliesAt(PlaceS const& caret) const {
  if (side_ != OperatorLimitC::BOTH_SIDES) return findEmptyExponent(caret) != nullptr;
  return findLimitOfPlace(*caret.node) && findTypedSide(caret) != OperatorLimitC::BOTH_SIDES;
}

bool OperatorLimitSideC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  auto const registered = insertion.crefOperatorList().lookup(limit_name);
  if (!registered) return false;
  PlaceS const caret = insertion.getCaret();
  bool const isTyped = side_ == OperatorLimitC::BOTH_SIDES;
  OperatorLimitC::SideE const side = isTyped ? findTypedSide(caret) : side_;
  auto const variant = registered->findVariant(side == OperatorLimitC::FROM_BELOW ? u"-" : u"+");
  if (!variant) return false;
  if (!appliesAt(caret)) return !isTyped && variant->runOperator(view);
  Node4C* const limit = insertion.refEnclosing(limit_name);
  if (isTyped) {
    insertion.refCaretNode().refText().erase(caret.pos - 1);
    insertion.placeCaret(rowEnd(*limit->child(ROW_TERM)));
  } else {
    Node4C* const power = insertion.refEnclosing();
    insertion.placeCaret(placeBefore(*power));
    power->getParent()->deleteChild(power->findChildNumber());
  }
  limit->setOperator(variant);
  return true;
}

OperatorLimitBothC::OperatorLimitBothC()
    : OperatorBC(both_sides_name, both_sides_name, 0, 0, false, false, 0) {}

bool OperatorLimitBothC::appliesAt(PlaceS const& caret) const {
  Node4C const* const limit = findLimitOfPlace(*caret.node);
  return limit && isAtRowEnd(caret) && !limit->crefOperator()->getVariant().empty();
}

bool OperatorLimitBothC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  auto const registered = insertion.crefOperatorList().lookup(limit_name);
  if (!registered || !appliesAt(insertion.getCaret())) return false;
  insertion.refEnclosing(limit_name)->setOperator(registered);
  return true;
}

}  // namespace zolt::catalogue_extended
