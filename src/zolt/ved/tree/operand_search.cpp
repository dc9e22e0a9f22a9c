#include "zolt/ved/tree/operand_search.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

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

/// Extends the stretch over the exponent that follows it.
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

  Node4C const* item = caret.node->goLeft();
  if (!item) return stretch;
  // Exponents belong to their base; there is an empty text between an exponent and another item.
  while (item->getType() == NODE4_POWER || item->isEmptyText()) {
    Node4C const* const left = item->goLeft();
    if (!left) break;
    item = left;
  }
  if (item->getType() == NODE4_TEXT) {
    stretch.far = {item, backOverOperand(item->crefText(), endOf(item).pos)};
  } else if (item->getType() == NODE4_OPERATOR) {
    stretch.far = placeBefore(*item);
  } else if (isClosingBracket(item->getType())) {
    Node4C const* const open = findPartner(*item);
    if (!open || !open->goLeft()) return stretch;
    PlaceS const end = placeBefore(*open);
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

  Node4C const* const item = caret.node->goRight();
  Node4C const* const partner = item && isOpeningBracket(item->getType()) ? findPartner(*item) : nullptr;
  bool const ends = partner && partner->goRight();
  if (pos == text.size()) {
    if (ends) {
      stretch.far = placeAfter(*partner);
      stretch.group = true;
      takeExponent(stretch);
    } else if (item && item->getType() == NODE4_OPERATOR) {
      stretch.far = placeAfter(*item);
    }
    return stretch;
  }

  while (pos < text.size() && isOperandCharacter(text[pos])) ++pos;
  stretch.far = {caret.node, pos};
  if (pos == text.size() && ends) stretch.far = placeAfter(*partner);
  takeExponent(stretch);
  return stretch;
}

}  // namespace zolt::math::ved
