#include "zolt/field/detail/tree_walk.h"

#include "zolt/common/signs.h"

namespace zolt::field::detail {

using namespace math::ved;

Node4C const* previousText(Node4C const* text) {
  do {
    text = text->goLeftLeaf();
  } while (text && text->getType() != NODE4_TEXT);
  return text;
}

Node4C const* nextText(Node4C const* text) {
  do {
    text = text->goRightLeaf();
  } while (text && text->getType() != NODE4_TEXT);
  return text;
}

Node4C const* enclosingItem(Node4C const* node) {
  Node4C const* const item = node->getParent()->getParent();
  return item->getType() == NODE4_ROOT ? nullptr : item;
}

bool isAtRowEnd(PlaceS place) { return place == rowEnd(*place.node->getParent()); }

bool isEmptyRow(Node4C const& row) { return row.numChildren() == 1 && row.child(0)->sizeText() == 0; }

bool isSlot(Node4C const& text) {
  if (text.getType() != NODE4_TEXT || text.sizeText() > 0) return false;
  if (text.getParent()->numChildren() == 1) return enclosingItem(&text) != nullptr;
  Node4C const* const right = text.goRight();
  if (!right || right->getType() != NODE4_POWER) return false;
  Node4C const* const left = text.goLeft();
  return !left || (left->getType() != NODE4_OPERATOR && !isClose(*left));
}

bool isTypedOpen(Node4C const& item) { return item.getType() == NODE4_OPEN; }

bool isTypedClose(Node4C const& item) { return item.getType() == NODE4_CLOSE; }

bool isOpen(Node4C const& item) { return isTypedOpen(item) || item.getType() == NODE4_AUTO_OPEN; }

bool isClose(Node4C const& item) { return isTypedClose(item) || item.getType() == NODE4_AUTO_CLOSE; }

bool isConstruct(Node4C const& item) {
  return item.getType() == NODE4_OPERATOR || item.getType() == NODE4_POWER;
}

Node4C const* findPartner(Node4C const& bracket) {
  bool const forward = isOpen(bracket);
  Node4C const& row = *bracket.getParent();
  unsigned long const count = row.numChildren();
  unsigned long depth = 0;
  for (unsigned long i = bracket.findChildNumber(); i < count; forward ? ++i : --i) {
    Node4C const& item = *row.child(i);
    if (isOpen(item) == forward && (isOpen(item) || isClose(item))) ++depth;
    if (isOpen(item) != forward && (isOpen(item) || isClose(item)) && --depth == 0) return &item;
  }
  return nullptr;
}

Node4C const* findOpenBracket(PlaceS place) {
  Node4C const& row = *place.node->getParent();
  unsigned long closed = 0;
  for (unsigned long i = place.node->findChildNumber(); i-- > 0;) {
    Node4C const& item = *row.child(i);
    if (isTypedClose(item)) ++closed;
    if (!isTypedOpen(item)) continue;
    if (closed == 0) return &item;
    --closed;
  }
  return nullptr;
}

bool isWordCharacter(char16_t c) { return c == math::common::pi_sign || Node4C::isAcceptable(c, true); }

bool isContinuation(char16_t c) {
  return (c >= 0xDC00 && c < 0xE000) || (c >= 0x0300 && c < 0x0370) || (c >= 0x20D0 && c < 0x2100) ||
         (c >= 0xFE00 && c < 0xFE10);
}

unsigned int wordStart(wstring const& text, unsigned int pos) {
  while (pos > 0 && isWordCharacter(text[pos - 1])) --pos;
  return pos;
}

unsigned int wordEnd(wstring const& text, unsigned int pos) {
  while (pos < text.size() && isWordCharacter(text[pos])) ++pos;
  return pos;
}

}  // namespace zolt::field::detail
