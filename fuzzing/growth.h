#pragma once

#include "fuzzing/targets.h"

namespace zolt::fuzz {

/// The check of the target `growth`, with a smaller formula of at least `length` characters.
std::string checkGrowthFrom(std::size_t length, std::uint8_t const* data, std::size_t size);

/// Whether a seed of `growth` gives a formula as an expression or a tree, and not as a text, sheet or script.
bool showsTree(BytesT const& seed);

/// Texts of 64 KB that the readers of `prefix`, `plain`, `infix`, `notation`, `sheet` and `script` start
/// from; none for another target.
std::vector<BytesT> longSeeds(std::string const& target);

}  // namespace zolt::fuzz
