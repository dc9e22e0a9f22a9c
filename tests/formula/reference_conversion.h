#pragma once

#include "tests/formula/formula_support.h"

namespace zolt::tests {

/// The tree that shows `expression`, built step by step as the conversion is described: every operand is put
/// into a new row item by item, each sign and bracket where it belongs. Slow, recursive and obvious.
TreeT showTreeStepByStep(ExpressionT const& expression);

/// A row's prefix text, or false and where it fails, with a map that holds one place for each character.
bool writePrefixStepByStep(math::ved::Node4C& row, wstring& prefix, math::ved::ErrorSelectionS& error);

}  // namespace zolt::tests
