#pragma once

#include <string>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class GraphicsABC;
class Node4C;
}  // namespace zolt::math::ved

namespace zolt::cli {

/// Writes the tokens of infix text in one line: `name "x" 0-1; plus 1-2; number "2" 2-3; end 3-3`. The two
/// numbers are where a token begins and ends, in 16-bit characters.
std::string dumpTokens(oss::wstring const& infix);

/// Lays the tree out and writes one line per node, indented by its level: the kind, the text in quotes where
/// there is one, and `dx`, `dy`, `width`, `height`, `midHeight`, `depth` with their values in surface units.
std::string dumpLayout(math::ved::Node4C& root, math::ved::GraphicsABC const& graphics);

/// Lays the tree out and writes the drawing calls, one per line, on a surface with fixed metrics.
std::string dumpDrawing(math::ved::Node4C& root);

}  // namespace zolt::cli
