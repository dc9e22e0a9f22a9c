#include "zolt/catalogue_extended/operator_interval.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "zolt/algexpr/parent_node.h"
#include "zolt/catalogue_extended/detail/row_line.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

wstring const interval_name = u"interval";
wstring const matrix_name = u"matrix";
wstring const matrix_from_interval_name = u"_interval_matrix";
using EndsS = OperatorIntervalC::EndsS;

wstring digit(bool belongs) { return belongs ? u"1" : u"0"; }

bool isDigit(wstring const& name) { return name == u"0" || name == u"1"; }

/// The operator of these ends; null when there is none.
PointerTC<OperatorBC> findInterval(OperatorListC const& operators, EndsS ends) {
  auto const registered = operators.lookup(interval_name);
  if (!registered || (ends.left && ends.right)) return registered;
  return registered->findVariant(OperatorIntervalC::variantOf(ends));
}

/// The interval of which a row that is not empty ends at the place, and no further one begins; null
/// elsewhere.
Node4C const* findEndedInterval(PlaceS at) {
  Node4C const* const interval = enclosingItem(*at.node);
  bool const isInterval =
      interval && interval->getType() == NODE4_OPERATOR && interval->crefText() == interval_name;
  Node4C const& row = *at.node->getParent();
  bool const isEnd = isInterval && isAtRowEnd(at) && !isEmptyRow(row) && !findOpenBracket(at);
  return isEnd && (row.findChildNumber() == 1 || isEmptyRow(*interval->child(1))) ? interval : nullptr;
}

/// The place before the only comma between an open bracket and `end`, outside further brackets; null when
/// there is none, or more than one.
PlaceS findComma(Node4C const& open, PlaceS end) {
  PlaceS found;
  long depth = 0;
  for (Node4C const* item = open.goRight(); item; item = item->goRight()) {
    if (isOpeningBracket(item->getType())) ++depth;
    if (isClosingBracket(item->getType())) --depth;
    wstring const& text = item->crefText();
    std::size_t const size = item == end.node ? end.pos : text.size();
    for (std::size_t i = 0; item->getType() == NODE4_TEXT && depth == 0 && i < size; ++i) {
      if (text[i] != u',') continue;
      if (found) return {};
      found = {item, static_cast<unsigned int>(i)};
    }
    if (item == end.node) return found;
  }
  return {};
}

/// Copies what is between the commas of a row, outside brackets, to rows of its own.
void copyCells(Node4C const& row, std::vector<rows::NodeT>& cells) {
  cells.push_back(std::make_unique<Node4C>(NODE4_LINE));
  auto const append = [&cells](rows::NodeT item) {
    cells.back()->insertChild(cells.back()->numChildren(), item.release());
  };
  long depth = 0;
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    rows::NodeT item(row.child(i)->clone());
    if (isOpeningBracket(item->getType())) ++depth;
    if (isClosingBracket(item->getType())) --depth;
    if (item->getType() != NODE4_TEXT || depth > 0) {
      append(std::move(item));
      continue;
    }
    wstring const text = item->crefText();
    for (std::size_t begin = 0, end = 0; end != text.size(); begin = end + 1) {
      if (begin > 0) cells.push_back(std::make_unique<Node4C>(NODE4_LINE));
      end = std::min(text.find(u',', begin), text.size());
      append(std::make_unique<Node4C>(NODE4_TEXT, nullptr, text.substr(begin, end - begin), 0));
    }
  }
}

bool hasComma(Node4C const& row) {
  std::vector<rows::NodeT> cells;
  copyCells(row, cells);
  return cells.size() > 1;
}

/// Puts a matrix in the place of an interval, whose formulas are its first row. Null, with nothing changed,
/// when there is none of so many columns.
Node4C* makeMatrix(ViewInsertionC& insertion, Node4C& interval, unsigned long numRows) {
  std::vector<rows::NodeT> cells;
  copyCells(*interval.child(0), cells);
  if (!isEmptyRow(*interval.child(1))) copyCells(*interval.child(1), cells);
  auto const registered = insertion.crefOperatorList().lookup(matrix_name);
  auto const matrix =
      registered ? registered->findColumns(static_cast<unsigned long>(cells.size())) : nullptr;
  if (!matrix) return nullptr;
  cells.resize(numRows * cells.size());
  Node4C* const row = interval.getParent();
  unsigned long const number = interval.findChildNumber();
  insertion.placeCaret(placeBefore(interval));
  row->deleteChild(number);
  Node4C* const made = rows::makeConstruct(*matrix, std::move(cells)).release();
  row->insertChild(number, made);
  return made;
}

wstring fromBracketName(char16_t sign) {
  return sign == u']' ? u"_interval_bracket" : u"_interval_parenthesis";
}

/// Whether a name is right before the bracket.
bool isCall(Node4C const& open) {
  Node4C const* const before = open.goLeft();
  return before && before->sizeText() > 0 && Node4C::isAcceptable(before->crefText().back(), true);
}

}  // namespace

OperatorIntervalC::OperatorIntervalC() : OperatorIntervalC(EndsS{true, true}) {
  for (EndsS const ends : {EndsS{true, false}, EndsS{false, true}, EndsS{false, false}}) {
    others_.push_back(new OperatorIntervalC(ends));
  }
}

OperatorIntervalC::OperatorIntervalC(EndsS ends)
    : ConstructBC(interval_name, interval_name, {2, 0, 1}, 0, false, 0), ends_(ends) {
  OperatorWordsS words;
  words.group = u"Sets";
  words.title = u"interval";
  words.label = u"[a, b]";
  words.shortcut = u"[";
  words.signs = u"[";
  words.typedRows = {0, 1};
  words.insideSigns = {{u']', OperatorIntervalEndC::nameOf(OperatorIntervalEndC::END_CLOSED)},
                       {u')', OperatorIntervalEndC::nameOf(OperatorIntervalEndC::END_OPEN)},
                       {u'[', OperatorIntervalEndC::nameOf(OperatorIntervalEndC::END_OPEN)},
                       {u';', matrix_from_interval_name}};
  setWords(std::move(words));
}

wstring OperatorIntervalC::variantOf(EndsS ends) { return digit(ends.left) + digit(ends.right); }

bool OperatorIntervalC::fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const {
  return numArguments == 4 && isDigit(node.asParent()->child(2).crefName()) &&
         isDigit(node.asParent()->child(3).crefName());
}

OperatorIntervalC::RowT OperatorIntervalC::fromArguments(math::algexpr::NodeABC const& node,
                                                         std::vector<RowT> arguments) const {
  auto const variant =
      findVariant(node.asParent()->child(2).crefName() + node.asParent()->child(3).crefName());
  arguments.resize(2);
  return rows::makeConstruct(variant ? *variant : static_cast<OperatorBC const&>(*this),
                             std::move(arguments));
}

wstring OperatorIntervalC::arrangeArgumentList(std::vector<wstring> const& rows) const {
  std::vector<wstring> arguments = rows;
  arguments.push_back(digit(ends_.left));
  arguments.push_back(digit(ends_.right));
  return OperatorBC::arrangeArgumentList(arguments);
}

wstring OperatorIntervalC::getVariant() const {
  return ends_.left && ends_.right ? wstring() : variantOf(ends_);
}

PointerTC<OperatorBC> OperatorIntervalC::findVariant(wstring const& variant) const {
  for (auto const& other : others_) {
    if (other->getVariant() == variant) return other;
  }
  return nullptr;
}

void OperatorIntervalC::layoutNode4(Node4C* node, GraphicsABC const& graphics) const {
  long const cell = graphics.getMetric(1);
  long const overhang = graphics.getMetric(2);
  detail::RowLineC line(*node, 0, 2);
  line.placeFrom(cell, graphics);
  line.alignAt(line.getAbove() + overhang);
  node->setWidth(line.getRight() + cell);
  node->setMidHeight(line.getAbove() + overhang);
  node->setHeight(node->getMidHeight() + line.getBelow() + overhang);
}

void OperatorIntervalC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                     long height, long) const {
  long const cell = graphics.getMetric(1);
  if (ends_.left) {
    graphics.drawSign(SIGN_OPEN_SQUARE, x, y, cell, height);
  } else {
    graphics.beginsWith(crefFirstText(*node->child(0)));
    graphics.drawOpenBracket(x, y, height, false);
  }
  if (ends_.right) {
    graphics.drawSign(SIGN_CLOSE_SQUARE, x + width - cell, y, cell, height);
  } else {
    graphics.drawCloseBracket(x + width, y, height, false);
  }
  detail::RowLineC::drawCommas(*node, 0, 2, graphics, x, y);
}

OperatorIntervalEndC::OperatorIntervalEndC(EndE end)
    : OperatorBC(nameOf(end), nameOf(end), 0, 0, false, false, 0), end_(end) {}

wstring OperatorIntervalEndC::nameOf(EndE end) {
  return end == END_CLOSED ? u"_interval_closed" : u"_interval_open";
}

bool OperatorIntervalEndC::appliesAt(PlaceS const& caret) const {
  return findEndedInterval(caret) != nullptr;
}

bool OperatorIntervalEndC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  if (!appliesAt(insertion.getCaret())) return false;
  Node4C* const interval = insertion.refEnclosing(interval_name);
  if (isEmptyRow(*interval->child(1))) {
    // A pair of brackets around one formula only groups.
    rows::NodeT content(interval->cutChild(0));
    content->setParent(nullptr);
    Node4C* const row = interval->getParent();
    unsigned long const number = interval->findChildNumber();
    insertion.placeCaret(startOf(interval->goRight()));
    row->deleteChild(number);
    row->spliceChildren(number, rows::bracket(std::move(content)).release());
    return true;
  }
  bool const left = static_cast<OperatorIntervalC const&>(*interval->crefOperator()).getEnds().left;
  if (left && end_ == END_CLOSED && hasComma(*interval->child(1))) {
    Node4C const* const matrix = makeMatrix(insertion, *interval, 1);
    if (matrix) insertion.placeCaret(placeAfter(*matrix));
    return matrix != nullptr;
  }
  auto const ended = findInterval(insertion.crefOperatorList(), {left, end_ == END_CLOSED});
  if (!ended) return false;
  interval->setOperator(ended);
  insertion.placeCaret(placeAfter(*interval));
  return true;
}

OperatorIntervalFromBracketC::OperatorIntervalFromBracketC(char16_t sign)
    : OperatorBC(fromBracketName(sign), fromBracketName(sign), 0, 0, false, false, 0),
      isClosed_(sign == u']') {
  OperatorWordsS words;
  words.signs = wstring(1, sign);
  setWords(std::move(words));
}

bool OperatorIntervalFromBracketC::appliesAt(PlaceS const& caret) const {
  Node4C const* const open = findOpenBracket(caret);
  if (!open) return isClosed_;
  bool const isOpen = isClosed_ || hasSuppliedClose(*open->getParent());
  return isOpen && findComma(*open, caret) && !isCall(*open);
}

bool OperatorIntervalFromBracketC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  auto const halfOpen = findInterval(insertion.crefOperatorList(), {false, isClosed_});
  if (!halfOpen) return false;
  PlaceS const end = insertion.getCaret();
  Node4C const* const open = findOpenBracket(end);
  PlaceS const comma = open ? findComma(*open, end) : PlaceS();
  if (!comma) return !open && halfOpen->runOperator(view);
  if (insertion.copySelection()) return false;
  if (!insertion.mayNestRow()) return false;
  auto const select = [&](PlaceS from, PlaceS to) {
    insertion.placeAnchor(from);
    insertion.placeCaret(to);
  };
  std::vector<rows::NodeT> rows;
  select(placeAfter(*open), comma);
  rows.push_back(insertion.copySelection());
  select({comma.node, comma.pos + 1}, end);
  rows.push_back(insertion.copySelection());
  select(placeBefore(*open), end);
  if (!insertion.deleteSelection()) return false;
  insertion.insertConstruct(rows::makeConstruct(*halfOpen, std::move(rows)), 1);
  Node4C* const interval = insertion.refEnclosing(interval_name);
  insertion.placeCaret(placeAfter(*interval));
  return true;
}

OperatorMatrixFromIntervalC::OperatorMatrixFromIntervalC()
    : OperatorBC(matrix_from_interval_name, matrix_from_interval_name, 0, 0, false, false, 0) {}

bool OperatorMatrixFromIntervalC::appliesAt(PlaceS const& caret) const {
  return findEndedInterval(caret) != nullptr;
}

bool OperatorMatrixFromIntervalC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  if (!appliesAt(insertion.getCaret())) return false;
  Node4C const* const matrix = makeMatrix(insertion, *insertion.refEnclosing(interval_name), 2);
  if (!matrix) return false;
  insertion.placeCaret(rowStart(*matrix->child(matrix->numChildren() / 2)));
  return true;
}

}  // namespace zolt::catalogue_extended
