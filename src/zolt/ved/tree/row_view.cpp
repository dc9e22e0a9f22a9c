#include "zolt/ved/tree/row_view.h"

#include <algorithm>
#include <utility>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

unsigned long countAncestors(Node4C const* node) {
  unsigned long count = 0;
  while ((node = node->getParent())) ++count;
  return count;
}

/// Replaces two nodes that are not inside one another by those of their ancestors that have the same parent.
void climbToSiblings(Node4C const*& a, Node4C const*& b) {
  unsigned long depthA = countAncestors(a);
  unsigned long depthB = countAncestors(b);
  for (; depthA > depthB; --depthA) a = a->getParent();
  for (; depthB > depthA; --depthB) b = b->getParent();
  while (a->getParent() != b->getParent()) {
    a = a->getParent();
    b = b->getParent();
  }
}

}  // namespace

bool isEmptyRow(Node4C const& row) { return row.numChildren() == 1 && row.child(0)->isEmptyText(); }

oss::wstring const& crefFirstText(Node4C const& row) {
  static oss::wstring const none;
  bool const begins = row.numChildren() > 0 && row.child(0)->getType() == NODE4_TEXT;
  return begins ? row.child(0)->crefText() : none;
}

bool hasEmptyRows(Node4C const& construct) {
  for (unsigned long i = 0; i < construct.numChildren(); ++i) {
    if (!isEmptyRow(*construct.child(i))) return false;
  }
  return true;
}

bool lacksOperand(Node4C const& emptyText) {
  if (emptyText.getParent()->numChildren() == 1) return true;
  Node4C const* const right = emptyText.goRight();
  if (!right || right->getType() != NODE4_POWER) return false;
  Node4C const* const left = emptyText.goLeft();
  return !left || (left->getType() != NODE4_OPERATOR && !isClosingBracket(left->getType()));
}

bool isSlot(Node4C const& text) {
  if (!text.isEmptyText() || !lacksOperand(text)) return false;
  return text.getParent()->numChildren() > 1 || enclosingItem(text);
}

Node4C const* enclosingItem(Node4C const& item) {
  Node4C const* const construct = item.getParent()->getParent();
  return construct->getType() == NODE4_ROOT ? nullptr : construct;
}

long rightEnd(Node4C const& row, unsigned long item) {
  Node4C const& node = *row.child(item);
  long const right = node.getDX() + node.getWidth();
  if (item == 0 || node.getType() != NODE4_POWER) return right;
  Node4C const& base = *row.child(item - 1);
  return std::max(right, base.getDX() + base.getWidth());
}

long leftEnd(Node4C const& row, unsigned long item) {
  long const left = row.child(item)->getDX();
  bool const isBase = item + 1 < row.numChildren() && row.child(item + 1)->getType() == NODE4_POWER;
  return isBase ? std::min(left, row.child(item + 1)->getDX()) : left;
}

Node4C const* exponentAbove(Node4C const& text) {
  Node4C const* const next = text.goRight();
  bool const isAbove =
      next && next->getType() == NODE4_POWER && next->getDX() < text.getDX() + text.getWidth();
  return isAbove ? next : nullptr;
}

bool isAtRowEnd(PlaceS place) { return place == rowEnd(*place.node->getParent()); }

Node4C const* previousText(Node4C const& text) {
  Node4C const* leaf = text.goLeftLeaf();
  while (leaf && leaf->getType() != NODE4_TEXT) leaf = leaf->goLeftLeaf();
  return leaf;
}

Node4C const* nextText(Node4C const& text) {
  Node4C const* leaf = text.goRightLeaf();
  while (leaf && leaf->getType() != NODE4_TEXT) leaf = leaf->goRightLeaf();
  return leaf;
}

Node4C const* findPartner(Node4C const& bracket) {
  bool const forwards = isOpeningBracket(bracket.getType());
  Node4C const& row = *bracket.getParent();
  unsigned long const count = row.numChildren();
  long depth = 0;
  for (unsigned long i = bracket.findChildNumber(); i < count; i = forwards ? i + 1 : i - 1) {
    Node4TypeE const type = row.child(i)->getType();
    if (isOpeningBracket(type)) ++depth;
    if (isClosingBracket(type)) --depth;
    if (depth == 0) return row.child(i);
  }
  return nullptr;
}

bool isWholeGroup(Node4C const& row) {
  Node4C const& start = *rowStart(row).node;
  Node4C const& end = *rowEnd(row).node;
  Node4C const* const first = start.goRight();
  if (!first || !start.isEmptyText() || !end.isEmptyText() || !isOpeningBracket(first->getType()))
    return false;
  return findPartner(*first) == end.goLeft();
}

Node4C const* findOpenBracket(PlaceS place) {
  Node4C const& row = *place.node->getParent();
  unsigned long closed = 0;
  for (unsigned long i = place.node->findChildNumber(); i-- > 0;) {
    Node4C const& item = *row.child(i);
    if (item.getType() == NODE4_CLOSE) ++closed;
    if (item.getType() != NODE4_OPEN) continue;
    if (closed == 0) return &item;
    --closed;
  }
  return nullptr;
}

bool hasSuppliedOpen(Node4C const& row) {
  return row.numChildren() > 2 && row.child(1)->getType() == NODE4_AUTO_OPEN;
}

bool hasSuppliedClose(Node4C const& row) {
  unsigned long const count = row.numChildren();
  return count > 2 && row.child(count - 2)->getType() == NODE4_AUTO_CLOSE;
}

SelectionS spanOf(SelectionS const& selection) {
  PlaceS start = selection.anchor ? selection.anchor : selection.caret;
  PlaceS end = selection.caret;
  if (start.node == end.node) return start.pos < end.pos ? SelectionS{start, end} : SelectionS{end, start};
  climbToSiblings(start.node, end.node);
  Node4C const& common = *start.node->getParent();
  if (common.getType() != NODE4_LINE) return {placeBefore(common), placeAfter(common)};
  if (start.node->findChildNumber() > end.node->findChildNumber()) std::swap(start, end);
  return {start, end};
}

SelectionS inOneRow(SelectionS const& selection) {
  auto [start, end] = spanOf(selection);
  if (start.node->getType() != NODE4_TEXT) start = placeBefore(*start.node);
  if (end.node->getType() != NODE4_TEXT) end = placeAfter(*end.node);
  return {start, end};
}

}  // namespace zolt::math::ved
