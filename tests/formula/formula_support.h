#pragma once

#include <string>

#include "tests/support/trees.h"
#include "zolt/ved/convert/error_selection.h"

namespace zolt::tests {

using oss::PointerTC;
using oss::wstring;

/// A node below `row` by the indices on the way down, as the case files name it: "/1/0", the row itself "/".
/// Null when there is none.
math::ved::Node4C const* findNode(math::ved::Node4C const& row, std::string const& name);

/// Draws a laid-out tree as a whole and part by part, and expects each part to have just the calls of the
/// whole, and all of them that can be seen.
void expectClippedDrawings(math::ved::Node4C& root);
/// How many calls draw the part of a laid-out tree that is in `clip`.
unsigned long countDrawingCalls(math::ved::Node4C const& root, math::ved::RectangleS const& clip);

/// Cause and places, `1@/0:0 /0:0`.
std::string describe(math::ved::ErrorSelectionS const& error, math::ved::Node4C const& row);

}  // namespace zolt::tests
