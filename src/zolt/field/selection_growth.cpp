#include "zolt/field/selection_growth.h"

#include "zolt/common/signs.h"
#include "zolt/field/detail/stretch.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;
namespace common = math::common;

namespace {

bool endsArgument(char16_t c) { return c == u','; }

bool endsSide(char16_t c) {
  return endsArgument(c) || common::isRelation(c) || c == u':' || c == common::store_sign;
}

bool endsTerm(char16_t c) { return endsSide(c) || c == u'+' || common::isMinus(c); }

bool endsOperand(char16_t c) { return !isWordCharacter(c) && c != u'!'; }

bool endsNothing(char16_t) { return false; }

using StopT = bool(char16_t);

unsigned int sizeOf(StretchS const& s, unsigned long item) {
  return static_cast<unsigned int>(s.row->child(item)->sizeText());
}

/// Moves the start left to the next stop, over constructs and whole pairs of brackets, and not out of the
/// brackets around it.
void extendLeft(StretchS& s, StopT stops) {
  for (;;) {
    wstring const& text = s.row->child(s.first)->crefText();
    while (s.firstPos > 0 && !stops(text[s.firstPos - 1])) --s.firstPos;
    if (s.firstPos > 0 || s.first == 0) return;
    Node4C const* item = s.row->child(s.first - 1);
    if (isOpen(*item)) return;
    s.first -= 2;
    if (isClose(*item)) {
      item = findPartner(*item);
      s.first = item->findChildNumber() - 1;
    }
    s.firstPos = sizeOf(s, s.first);
  }
}

void extendRight(StretchS& s, StopT stops) {
  for (;;) {
    wstring const& text = s.row->child(s.last)->crefText();
    while (s.lastPos < text.size() && !stops(text[s.lastPos])) ++s.lastPos;
    if (s.lastPos < text.size() || s.last + 1 == s.row->numChildren()) return;
    Node4C const* item = s.row->child(s.last + 1);
    if (isClose(*item)) return;
    s.last += 2;
    if (isOpen(*item)) {
      item = findPartner(*item);
      s.last = item->findChildNumber() + 1;
    }
    s.lastPos = 0;
  }
}

void trimBlanks(StretchS& s) {
  wstring const& first = s.row->child(s.first)->crefText();
  while (s.firstPos < first.size() && first[s.firstPos] == u' ' && !s.isEmpty()) ++s.firstPos;
  wstring const& last = s.row->child(s.last)->crefText();
  while (s.lastPos > 0 && last[s.lastPos - 1] == u' ' && !s.isEmpty()) --s.lastPos;
}

StretchS extended(StretchS s, StopT stops) {
  extendLeft(s, stops);
  extendRight(s, stops);
  trimBlanks(s);
  return s;
}

StretchS wordAround(StretchS s) {
  if (s.first != s.last) return s;
  wstring const& text = s.row->child(s.first)->crefText();
  s.firstPos = wordStart(text, s.firstPos);
  s.lastPos = wordEnd(text, s.lastPos);
  return s;
}

/// With the brackets that enclose what stands between them.
StretchS withBrackets(StretchS s) {
  s = extended(s, endsNothing);
  if (s.first == 0 || s.last + 1 == s.row->numChildren()) return s;
  if (!isOpen(*s.row->child(s.first - 1)) || !isClose(*s.row->child(s.last + 1))) return s;
  s.first -= 2;
  s.firstPos = sizeOf(s, s.first);
  s.last += 2;
  s.lastPos = 0;
  return s;
}

StretchS rowStretch(Node4C const& row) {
  StretchS s;
  s.row = &row;
  s.last = row.numChildren() - 1;
  s.lastPos = sizeOf(s, s.last);
  return s;
}

StretchS aroundItem(Node4C const& item) {
  StretchS s;
  s.row = item.getParent();
  s.first = item.findChildNumber() - 1;
  s.firstPos = sizeOf(s, s.first);
  s.last = s.first + 2;
  return s;
}

bool isBefore(unsigned long item, unsigned int pos, unsigned long otherItem, unsigned int otherPos) {
  return item < otherItem || (item == otherItem && pos < otherPos);
}

/// Whether `s` contains `inner`, a stretch of the same row, and more.
bool isLarger(StretchS const& s, StretchS const& inner) {
  return !(s == inner) && !isBefore(inner.first, inner.firstPos, s.first, s.firstPos) &&
         !isBefore(s.last, s.lastPos, inner.last, inner.lastPos);
}

SelectionS toSelection(StretchS const& s) { return {s.begin(), s.end()}; }

}  // namespace

SelectionS growSelection(ViewZNT4C const& view) {
  StretchS const now = selectedStretch(view);
  if (StretchS const word = wordAround(now); isLarger(word, now)) return toSelection(word);
  for (StopT* const stops : {endsOperand, endsTerm, endsSide, endsArgument, endsNothing}) {
    if (StretchS const part = extended(now, stops); isLarger(part, now)) return toSelection(part);
  }
  if (StretchS const pair = withBrackets(now); isLarger(pair, now)) return toSelection(pair);
  if (StretchS const row = rowStretch(*now.row); isLarger(row, now)) return toSelection(row);
  Node4C const* const item = enclosingItem(now.begin().node);
  return toSelection(item ? aroundItem(*item) : now);
}

SelectionS selectItem(PlaceS place) {
  StretchS s;
  s.row = place.node->getParent();
  s.first = s.last = place.node->findChildNumber();
  s.firstPos = s.lastPos = place.pos;
  s = wordAround(s);
  wstring const& text = place.node->crefText();
  if (s.isEmpty() && s.lastPos < text.size()) ++s.lastPos;
  if (s.isEmpty() && s.firstPos > 0) --s.firstPos;
  if (!s.isEmpty()) return toSelection(s);

  Node4C const* item = place.node->goRight();
  if (!item) item = place.node->goLeft();
  if (!item) return toSelection(s);
  s = aroundItem(*item);
  Node4C const* const partner = isConstruct(*item) ? nullptr : findPartner(*item);
  if (!partner) return toSelection(s);
  StretchS const other = aroundItem(*partner);
  if (other.first < s.first) s.first = other.first;
  if (other.last > s.last) s.last = other.last;
  s.firstPos = sizeOf(s, s.first);
  return toSelection(s);
}

SelectionS selectRow(PlaceS place) { return wholeRow(*place.node->getParent()); }

SelectionS selectConstructAt(ViewZNT4C& view, long x, long y) {
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
  return found ? toSelection(aroundItem(*found)) : SelectionS();
}

}  // namespace zolt::field
