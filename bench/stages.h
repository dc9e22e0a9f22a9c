#pragma once

#include <memory>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::bench {

using TreeT = std::unique_ptr<math::ved::Node4C>;
using ExpressionT = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;

/// The way of an expression through the component, one function per step.
ExpressionT readPrefix(oss::wstring const& prefix);
TreeT buildTree(ExpressionT const& expression);
void layOut(math::ved::Node4C& tree, math::ved::GraphicsABC const& surface);
void draw(math::ved::Node4C const& tree, math::ved::GraphicsABC const& surface);
ExpressionT writeExpression(math::ved::Node4C& tree);

long countNodes(math::ved::Node4C const& tree);

/// Fills the process's operator table, once.
void registerOperators();

}  // namespace zolt::bench
