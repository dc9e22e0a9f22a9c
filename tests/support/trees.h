#pragma once

#include <memory>
#include <string>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::tests {

using TreeT = std::unique_ptr<math::ved::Node4C>;
using ExpressionT = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;

/// A tree in tree notation, exactly as written. One that cannot be read fails the running test.
math::ved::TreeNotationS readTree(std::string const& notation);
/// The tree that shows `expression`, every digit kept.
TreeT showTree(ExpressionT const& expression);

std::string describe(math::ved::Node4C const& tree);
std::string describe(ExpressionT const& expression);
/// Places, sizes and font depths of a node and of everything below it.
std::string describeBoxes(math::ved::Node4C const& node);

/// Whether the byte form of a row or a root reads.
bool readBytes(oss::bytestring const& bytes, math::ved::Node4C& node);

}  // namespace zolt::tests
