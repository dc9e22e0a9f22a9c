#include "tests/formula/formula_support.h"

#include <sstream>

namespace zolt::tests {

using namespace math::ved;

Node4C const* findNode(Node4C const& row, std::string const& name) {
  Node4C const* node = &row;
  std::istringstream steps(name);
  char slash = 0;
  unsigned long index = 0;
  while (node && steps >> slash >> index) node = index < node->numChildren() ? node->child(index) : nullptr;
  return node;
}

static std::string nameNode(Node4C const& row, Node4C const* node) {
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
