#include "tests/formula/formula_support.h"

#include <gtest/gtest.h>
#include <utf8.h>

#include <sstream>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/number_display_format.h"

namespace zolt::tests {

using namespace math::ved;

TreeNotationS readTree(std::string const& notation) {
  TreeNotationS tree;
  unsigned long position = 0;
  if (!readTreeNotation(utf8::utf8to16(notation), standardOperators(), tree, position)) {
    ADD_FAILURE() << notation << " does not read at " << position;
    tree.root = showTree(nullptr);
  }
  return tree;
}

TreeT showTree(ExpressionT const& expression) {
  return TreeT(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
}

std::string describe(Node4C const& tree) { return toUtf8(writeTreeNotation(tree)); }

std::string describe(ExpressionT const& expression) {
  return expression ? toUtf8(expression->toPrefixString()) : "no expression";
}

Node4C const* findNode(Node4C const& row, std::string const& name) {
  Node4C const* node = &row;
  std::istringstream steps(name);
  char slash = 0;
  unsigned long index = 0;
  while (node && steps >> slash >> index) node = index < node->numChildren() ? node->child(index) : nullptr;
  return node;
}

std::string nameNode(Node4C const& row, Node4C const* node) {
  if (!node) return "null";
  std::string name;
  for (; node && node != &row; node = node->getParent())
    name = "/" + std::to_string(node->findChildNumber()) + name;
  return name.empty() ? "/" : name;
}

std::string describe(ErrorSelectionS const& error, Node4C const& row) {
  return std::to_string(error.cause) + "@" + nameNode(row, error.firstNode) + ":" +
         std::to_string(error.firstIndex) + " " + nameNode(row, error.secondNode) + ":" +
         std::to_string(error.secondIndex);
}

}  // namespace zolt::tests
