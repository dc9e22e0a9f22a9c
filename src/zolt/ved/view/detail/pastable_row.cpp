#include "zolt/ved/view/detail/pastable_row.h"

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

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

// U+0000 stops the lexer, and a grave accent begins or ends prefix text within a row's infix text. With them
// a text would not mean what it shows, unless each pair of accents encloses complete prefix text.
bool isSoundText(wstring const& text) {
  if (text.find(u'\0') != wstring::npos) return false;
  for (std::size_t at = 0; (at = text.find(Node4C::PREFIX_C, at)) != wstring::npos;) {
    std::size_t const end = text.find(Node4C::PREFIX_C, ++at);
    if (end == wstring::npos) return false;
    if (!algexpr::AlgebraicExpressionC::fromPrefixString(text.substr(at, end - at))) return false;
    at = end + 1;
  }
  return true;
}

bool isSoundConstruct(Node4C const& node) {
  OperatorBC const* const op = node.crefOperator();
  if (!op || op->isLinear() || !op->isConstruct()) return false;
  return op->getArity() == 0 || op->getArity() == node.numChildren();
}

bool isSoundNode(Node4C const& node) {
  switch (node.getType()) {
    case NODE4_LINE:
      return node.crefText().empty() && holdsOnlyItems(node);
    case NODE4_TEXT:
      return node.numChildren() == 0 && isSoundText(node.crefText());
    case NODE4_OPERATOR:
      return isSoundConstruct(node) && holdsOnlyRows(node);
    case NODE4_POWER:
      return node.crefText().empty() && node.numChildren() == 1 && holdsOnlyRows(node);
    default:
      return node.crefText().empty() && node.numChildren() == 0;
  }
}

}  // namespace

bool isPastableRow(Node4C const& top) {
  if (top.getType() != NODE4_LINE) return false;
  return walkTree(top, [](Node4C const& node) { return isSoundNode(node) ? WALK_INTO : WALK_STOP; });
}

}  // namespace zolt::math::ved
