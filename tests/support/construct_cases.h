#pragma once

#include <string>

namespace zolt::tests {

/// Checks the cases of a file. A case is an expression that must come back through tree, bytes, notation,
/// plain text and LaTeX, and its tree; or "type" with what a person types, and tree and expression; or "read"
/// with plain text, and its expression.
void checkConstructs(std::string const& path);

}  // namespace zolt::tests
