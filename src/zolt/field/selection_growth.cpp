#include "zolt/field/selection_growth.h"

#include "zolt/common/signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/tree_path.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;
namespace common = math::common;

namespace {

/// The units of a row that a character can end; the larger ones come later.
enum UnitE : int { UNIT_NONE, UNIT_OPERAND, UNIT_TERM, UNIT_SIDE, UNIT_ARGUMENT, UNIT_CONTENT };

/// The largest unit that `c` ends; it ends the smaller ones, too.
UnitE endedBy(char16_t c) {
  if (c == u',') return UNIT_ARGUMENT;
  if (common::isRelation(c) || c == u':' || c == common::store_sign) return UNIT_SIDE;
  if (c == u'+' || common::isMinus(c)) return UNIT_TERM;
  return isWordCharacter(c) || c == u'!' ? UNIT_NONE : UNIT_OPERAND;
}

// All selections here are stretches of one row, from the anchor to the caret.

bool isEmpty(SelectionS const& s) { return s.anchor == s.caret; }

/// Moves the start left to where the unit starts, past constructs and whole pairs of brackets, but not out of
/// the brackets around it.
PlaceS extendedLeft(PlaceS start, UnitE unit) {
  for (;;) {
    wstring const& text = start.node->crefText();
    while (start.pos > 0 && endedBy(text[start.pos - 1]) < unit) --start.pos;
    Node4C const* const item = start.pos == 0 ? start.node->goLeft() : nullptr;
    if (!item || isOpeningBracket(item->getType())) return start;
    start = placeBefore(isClosingBracket(item->getType()) ? *findPartner(*item) : *item);
  }
}

PlaceS extendedRight(PlaceS end, UnitE unit) {
  for (;;) {
    wstring const& text = end.node->crefText();
    while (end.pos < text.size() && endedBy(text[end.pos]) < unit) ++end.pos;
    Node4C const* const item = end.pos == text.size() ? end.node->goRight() : nullptr;
    if (!item || isClosingBracket(item->getType())) return end;
    end = placeAfter(isOpeningBracket(item->getType()) ? *findPartner(*item) : *item);
  }
}

SelectionS withoutBlanks(SelectionS s) {
  wstring const& first = s.anchor.node->crefText();
  while (s.anchor.pos < first.size() && first[s.anchor.pos] == u' ' && !isEmpty(s)) ++s.anchor.pos;
  wstring const& last = s.caret.node->crefText();
  while (s.caret.pos > 0 && last[s.caret.pos - 1] == u' ' && !isEmpty(s)) --s.caret.pos;
  return s;
}

SelectionS extended(SelectionS const& s, UnitE unit) {
  return withoutBlanks({extendedLeft(s.anchor, unit), extendedRight(s.caret, unit)});
}

SelectionS wordAround(SelectionS s) {
  if (s.anchor.node != s.caret.node) return s;
  wstring const& text = s.anchor.node->crefText();
  s.anchor.pos = wordStart(text, s.anchor.pos);
  s.caret.pos = wordEnd(text, s.caret.pos);
  return s;
}

/// The selection together with the brackets around it.
SelectionS withBrackets(SelectionS const& s) {
  SelectionS const content = extended(s, UNIT_CONTENT);
  Node4C const* const open = content.anchor.node->goLeft();
  Node4C const* const close = content.caret.node->goRight();
  if (!open || !close || !isOpeningBracket(open->getType()) || !isClosingBracket(close->getType()))
    return content;
  return {placeBefore(*open), placeAfter(*close)};
}

SelectionS aroundItem(Node4C const& item) { return {placeBefore(item), placeAfter(item)}; }

/// Whether `s` contains `inner`, a stretch of the same row, and more.
bool isLarger(SelectionS const& s, SelectionS const& inner) {
  bool const same = s.anchor == inner.anchor && s.caret == inner.caret;
  return !same && !isBefore(inner.anchor, s.anchor) && !isBefore(s.caret, inner.caret);
}

}  // namespace

SelectionS growSelection(ViewZNT4C const& view) {
  SelectionS const now = inOneRow(view.getSelection());
  if (SelectionS const word = wordAround(now); isLarger(word, now)) return word;
  for (UnitE const unit : {UNIT_OPERAND, UNIT_TERM, UNIT_SIDE, UNIT_ARGUMENT, UNIT_CONTENT}) {
    if (SelectionS const part = extended(now, unit); isLarger(part, now)) return part;
  }
  if (SelectionS const pair = withBrackets(now); isLarger(pair, now)) return pair;
  if (SelectionS const row = selectRow(now.anchor); isLarger(row, now)) return row;
  Node4C const* const item = enclosingItem(*now.anchor.node);
  return item ? aroundItem(*item) : now;
}

SelectionS selectItem(PlaceS place) {
  SelectionS s = wordAround({place, place});
  wstring const& text = place.node->crefText();
  if (isEmpty(s) && s.caret.pos < text.size()) ++s.caret.pos;
  if (isEmpty(s) && s.anchor.pos > 0) --s.anchor.pos;
  if (!isEmpty(s)) return s;

  Node4C const* item = place.node->goRight();
  if (!item) item = place.node->goLeft();
  if (!item) return s;
  Node4C const* const partner = isConstruct(item->getType()) ? nullptr : findPartner(*item);
  if (!partner) return aroundItem(*item);
  bool const opens = isOpeningBracket(item->getType());
  return {placeBefore(opens ? *item : *partner), placeAfter(opens ? *partner : *item)};
}

SelectionS selectRow(PlaceS place) { return wholeRow(*place.node->getParent()); }

SelectionS selectConstructAt(ViewZNT4C const& view, long x, long y) {
  PointS const size = view.getExpressionSize();
  if (x < 0 || y < 0 || x >= size.x || y >= size.y) return {};
  Node4C const* found = nullptr;
  Node4C const* node = &view.crefRoot();
  for (bool deeper = true; deeper;) {
    deeper = false;
    for (unsigned long i = 0; i < node->numChildren(); ++i) {
      Node4C const& child = *node->child(i);
      long const atX = x - child.getDX();
      long const atY = y - child.getDY();
      if (atX < 0 || atY < 0 || atX >= child.getWidth() || atY >= child.getHeight()) continue;
      if (child.getType() == NODE4_TEXT && child.sizeText() > 0) return {};
      if (child.getType() == NODE4_OPERATOR) found = &child;
      node = &child;
      x = atX;
      y = atY;
      deeper = true;
      break;
    }
  }
  return found ? aroundItem(*found) : SelectionS();
}

}  // namespace zolt::field
