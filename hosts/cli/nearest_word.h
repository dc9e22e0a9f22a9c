#pragma once

#include <string>
#include <vector>

namespace zolt::cli {

/// The one of `words` that was probably meant when `given` was typed: the fewest letters left out, added,
/// changed or swapped with their neighbour lead to it, at most one for every three letters. Empty when there
/// is none.
std::string findNearest(std::string const& given, std::vector<std::string> const& words);

/// `; did you mean "…"?`; empty for an empty word.
std::string suggest(std::string const& word);

}  // namespace zolt::cli
