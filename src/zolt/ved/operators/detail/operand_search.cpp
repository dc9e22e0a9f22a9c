#include "zolt/ved/operators/detail/operand_search.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::detail {

namespace {

constexpr char16_t factorial = u'!';

bool isOperandCharacter(char16_t c) { return c != u' ' && Node4C::isAcceptable(c, false); }

unsigned int backOverBlanks(wstring const& text, unsigned int pos) {
  while (pos > 0 && text[pos - 1] == u' ') --pos;
  return pos;
}

unsigned int backOverFactorials(wstring const& text, unsigned int pos) {
  while (pos > 0 && text[pos - 1] == factorial) --pos;
  return pos;
}

unsigned int backOverOperand(wstring const& text, unsigned int pos) {
  while (pos > 0 && (isOperandCharacter(text[pos - 1]) || text[pos - 1] == factorial)) --pos;
  return pos;
}

unsigned int backOverName(wstring const& text, unsigned int pos) {
  while (pos > 0 && Node4C::isAcceptable(text[pos - 1], true)) --pos;
  return pos;
}

/// The index of the bracket that matches the one at `i`, or the number of items when there is none.
unsigned long findMatch(Node4C const& row, unsigned long i) {
  bool const forwards = isOpeningBracket(row.child(i)->getType());
  unsigned long const count = row.numChildren();
  long depth = 0;
  for (unsigned long k = i; k < count; k = forwards ? k + 1 : k - 1) {
    Node4TypeE const type = row.child(k)->getType();
    if (isOpeningBracket(type)) ++depth;
    if (isClosingBracket(type)) --depth;
    if (depth == 0) return k;
  }
  return count;
}

/// Takes the exponent that follows the stretch with it.
void takeExponent(OperandStretchS& stretch) {
  if (stretch.far != endOf(stretch.far.node)) return;
  Node4C const* const power = stretch.far.node->goRight();
  if (power && power->getType() == NODE4_POWER && power->goRight()) stretch.far = placeAfter(*power);
}

}  // namespace

OperandStretchS findLeftOperand(PlaceS caret) {
  OperandStretchS stretch;
  wstring const& text = caret.node->crefText();
  stretch.near = {caret.node, backOverBlanks(text, caret.pos)};
  unsigned int const pos = backOverFactorials(text, stretch.near.pos);
  if (pos > 0) {
    stretch.far = {caret.node, backOverOperand(text, pos)};
    return stretch;
  }

  Node4C const& row = *caret.node->getParent();
  unsigned long i = caret.node->findChildNumber();
  if (i == 0) return stretch;
  // Exponents go with their base; between an exponent and another item stands an empty text.
  --i;
  while (i > 0 && (row.child(i)->getType() == NODE4_POWER || row.child(i)->isEmptyText())) --i;
  Node4C const* const item = row.child(i);
  if (item->getType() == NODE4_TEXT) {
    stretch.far = {item, backOverOperand(item->crefText(), endOf(item).pos)};
  } else if (item->getType() == NODE4_OPERATOR) {
    stretch.far = placeBefore(*item);
  } else if (isClosingBracket(item->getType())) {
    unsigned long const open = findMatch(row, i);
    if (open == 0 || open >= row.numChildren()) return stretch;
    PlaceS const end = endOf(row.child(open - 1));
    stretch.far = {end.node, backOverName(end.node->crefText(), end.pos)};
    stretch.group = stretch.far == end;
  }
  return stretch;
}

OperandStretchS findRightOperand(PlaceS caret) {
  OperandStretchS stretch;
  stretch.near = caret;
  wstring const& text = caret.node->crefText();
  unsigned int pos = caret.pos;
  while (pos < text.size() && text[pos] == u' ') ++pos;

  Node4C const& row = *caret.node->getParent();
  unsigned long const next = caret.node->findChildNumber() + 1;
  if (pos == text.size()) {
    if (next + 1 >= row.numChildren()) return stretch;
    Node4C const* const item = row.child(next);
    if (item->getType() == NODE4_OPERATOR) {
      stretch.far = startOf(row.child(next + 1));
    } else if (isOpeningBracket(item->getType())) {
      unsigned long const close = findMatch(row, next);
      if (close + 1 >= row.numChildren()) return stretch;
      stretch.far = startOf(row.child(close + 1));
      stretch.group = true;
      takeExponent(stretch);
    }
    return stretch;
  }

  while (pos < text.size() && isOperandCharacter(text[pos])) ++pos;
  stretch.far = {caret.node, pos};
  if (pos == text.size() && next < row.numChildren() && isOpeningBracket(row.child(next)->getType())) {
    unsigned long const close = findMatch(row, next);
    if (close + 1 < row.numChildren()) stretch.far = startOf(row.child(close + 1));
  }
  takeExponent(stretch);
  return stretch;
}

}  // namespace zolt::math::ved::detail
