#pragma once

#include "fuzzing/targets.h"

namespace zolt::fuzz {

/// The check of the target `growth`, with a smaller formula of at least `length` characters.
std::string checkGrowthFrom(std::size_t length, std::uint8_t const* data, std::size_t size);

/// Whether a seed of `growth` gives a formula as an expression or a tree, and not as a text, sheet or script.
bool showsTree(BytesT const& seed);

/// Texts of about `length` characters that nest each operator in each of its arguments, and rows of many
/// items, for the readers of `prefix`, `plain`, `infix`, `notation`, `sheet`, `script` and `latex`; none for
/// another target.
std::vector<BytesT> nestedSeeds(std::string const& target, std::size_t length);

}  // namespace zolt::fuzz
