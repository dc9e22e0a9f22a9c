#include "zolt/ved/view/detail/pastable_row.h"

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

bool holdsOnlyRows(Node4C const& node) {
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (node.child(i)->getType() != NODE4_LINE) return false;
  }
  return true;
}

bool holdsOnlyItems(Node4C const& row) {
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    Node4TypeE const type = row.child(i)->getType();
    if (type < NODE4_TEXT || type > NODE4_AUTO_CLOSE) return false;
  }
  return true;
}

// A grave accent would end or begin prefix text in the middle of a row's infix text, and U+0000 stops the
// lexer: the text would not mean what it shows.
bool isPlainText(wstring const& text) {
  return text.find(u'\0') == wstring::npos && text.find(Node4C::PREFIX_C) == wstring::npos;
}

bool isConstruct(Node4C const& node) {
  OperatorBC const* const op = node.crefOperator();
  if (!op || op->isLinear() || !op->isConstruct()) return false;
  return op->getArity() == 0 || op->getArity() == node.numChildren();
}

bool isSoundNode(Node4C const& node) {
  switch (node.getType()) {
    case NODE4_LINE:
      return holdsOnlyItems(node);
    case NODE4_TEXT:
      return node.numChildren() == 0 && isPlainText(node.crefText());
    case NODE4_OPERATOR:
      return isConstruct(node) && holdsOnlyRows(node);
    case NODE4_POWER:
      return node.numChildren() == 1 && holdsOnlyRows(node);
    default:
      return node.numChildren() == 0;
  }
}

}  // namespace

bool isPastableRow(Node4C const& top) {
  if (top.getType() != NODE4_LINE) return false;
  Node4C const* node = &top;
  for (;;) {
    if (!isSoundNode(*node)) return false;
    if (node->numChildren() > 0) {
      node = node->child(0);
      continue;
    }
    Node4C const* next = nullptr;
    while (node != &top && !(next = node->goRight())) node = node->getParent();
    if (node == &top) return true;
    node = next;
  }
}

}  // namespace zolt::math::ved
