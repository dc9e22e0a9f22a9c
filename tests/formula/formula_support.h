#pragma once

#include <memory>
#include <string>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::tests {

using oss::PointerTC;
using oss::wstring;

using TreeT = std::unique_ptr<math::ved::Node4C>;
using ExpressionT = PointerTC<math::algexpr::AlgebraicExpressionC>;

/// A tree in tree notation, exactly as written. One that cannot be read fails the running test.
math::ved::TreeNotationS readTree(std::string const& notation);

/// The tree that shows `expression`, every digit kept.
TreeT showTree(ExpressionT const& expression);

std::string describe(math::ved::Node4C const& tree);
std::string describe(ExpressionT const& expression);

/// A node below `row` by the indices on the way down, as the case files name it: "/1/0", the row itself "/".
/// Null when there is none.
math::ved::Node4C const* findNode(math::ved::Node4C const& row, std::string const& name);
std::string nameNode(math::ved::Node4C const& row, math::ved::Node4C const* node);

/// Cause and places, `1@/0:0 /0:0`.
std::string describe(math::ved::ErrorSelectionS const& error, math::ved::Node4C const& row);

}  // namespace zolt::tests
