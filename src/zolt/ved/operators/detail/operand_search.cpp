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
  if (stretch.farPos != stretch.far->sizeText()) return;
  Node4C* const power = stretch.far->goRight();
  if (!power || power->getType() != NODE4_POWER || !power->goRight()) return;
  stretch.far = power->goRight();
  stretch.farPos = 0;
}

}  // namespace

OperandStretchS findLeftOperand(Node4C* caretNode, unsigned int caretPos) {
  OperandStretchS stretch;
  stretch.near = caretNode;
  stretch.nearPos = backOverBlanks(caretNode->crefText(), caretPos);
  wstring const& text = caretNode->crefText();
  unsigned int const pos = backOverFactorials(text, stretch.nearPos);
  if (pos > 0) {
    stretch.far = caretNode;
    stretch.farPos = backOverOperand(text, pos);
    return stretch;
  }

  Node4C const& row = *caretNode->getParent();
  unsigned long i = caretNode->findChildNumber();
  if (i == 0) return stretch;
  // Exponents go with their base; between an exponent and another item stands an empty text.
  --i;
  while (i > 0 && (row.child(i)->getType() == NODE4_POWER || row.child(i)->isEmptyText())) --i;
  Node4C* const item = row.child(i);
  if (item->getType() == NODE4_TEXT) {
    stretch.far = item;
    stretch.farPos = backOverOperand(item->crefText(), static_cast<unsigned int>(item->sizeText()));
  } else if (item->getType() == NODE4_OPERATOR) {
    stretch.far = item->goLeft();
    if (stretch.far) stretch.farPos = static_cast<unsigned int>(stretch.far->sizeText());
  } else if (isClosingBracket(item->getType())) {
    unsigned long const open = findMatch(row, i);
    if (open == 0 || open >= row.numChildren()) return stretch;
    stretch.far = row.child(open - 1);
    auto const end = static_cast<unsigned int>(stretch.far->sizeText());
    stretch.farPos = backOverName(stretch.far->crefText(), end);
    stretch.group = stretch.farPos == end;
  }
  return stretch;
}

OperandStretchS findRightOperand(Node4C* caretNode, unsigned int caretPos) {
  OperandStretchS stretch;
  stretch.near = caretNode;
  stretch.nearPos = caretPos;
  wstring const& text = caretNode->crefText();
  unsigned int pos = caretPos;
  while (pos < text.size() && text[pos] == u' ') ++pos;

  Node4C const& row = *caretNode->getParent();
  unsigned long const next = caretNode->findChildNumber() + 1;
  if (pos == text.size()) {
    if (next + 1 >= row.numChildren()) return stretch;
    Node4C* const item = row.child(next);
    if (item->getType() == NODE4_OPERATOR) {
      stretch.far = row.child(next + 1);
    } else if (isOpeningBracket(item->getType())) {
      unsigned long const close = findMatch(row, next);
      if (close + 1 >= row.numChildren()) return stretch;
      stretch.far = row.child(close + 1);
      stretch.group = true;
      takeExponent(stretch);
    }
    return stretch;
  }

  while (pos < text.size() && isOperandCharacter(text[pos])) ++pos;
  stretch.far = caretNode;
  stretch.farPos = pos;
  if (pos == text.size() && next < row.numChildren() && isOpeningBracket(row.child(next)->getType())) {
    unsigned long const close = findMatch(row, next);
    if (close + 1 < row.numChildren()) {
      stretch.far = row.child(close + 1);
      stretch.farPos = 0;
    }
  }
  takeExponent(stretch);
  return stretch;
}

}  // namespace zolt::math::ved::detail
