#include "bench/stages.h"

#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::bench {

using math::algexpr::AlgebraicExpressionC;
using math::ved::Node4C;

ExpressionT readPrefix(oss::wstring const& prefix) { return AlgebraicExpressionC::fromPrefixString(prefix); }

TreeT buildTree(ExpressionT const& expression) {
  return TreeT(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
}

void layOut(Node4C& tree, math::ved::GraphicsABC const& surface) { tree.layout(surface); }

void draw(Node4C const& tree, math::ved::GraphicsABC const& surface) { tree.display(surface, 0, 0, nullptr); }

ExpressionT writeExpression(Node4C& tree) { return tree.getAlgebraicExpression(nullptr); }

long countNodes(Node4C const& tree) {
  long count = 0;
  Node4C const* node = &tree;
  for (;;) {
    ++count;
    if (node->numChildren() > 0) {
      node = node->child(0);
      continue;
    }
    Node4C const* next = nullptr;
    while (node != &tree && !(next = node->goRight())) node = node->getParent();
    if (node == &tree) return count;
    node = next;
  }
}

void registerOperators() {
  auto const& engine = math::algexpr::CASSessionBC::getSession()->getEngine();
  static bool const once =
      (catalogue::registerStandardOperators(*math::ved::OperatorListRepositoryC::lookup(engine)), true);
  static_cast<void>(once);
}

}  // namespace zolt::bench
