#include "zolt/ved/view/detail/pastable_row.h"

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::math::ved {

namespace {

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

bool isSoundNode(Node4C const& node) {
  if (validateShape(node) != TREE_VALID) return false;
  if (node.getType() == NODE4_TEXT) return isSoundText(node.crefText());
  return node.getType() == NODE4_OPERATOR || node.crefText().empty();
}

}  // namespace

bool isPastableRow(Node4C const& top) {
  if (top.getType() != NODE4_LINE) return false;
  return walkTree(top, [](Node4C const& node) { return isSoundNode(node) ? WALK_INTO : WALK_STOP; });
}

}  // namespace zolt::math::ved
