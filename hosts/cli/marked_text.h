#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zolt::cli {

/// A text as a terminal shows it and the line that marks a part of it: "^~~~" under the part.
struct MarkedTextS {
  std::string text;
  std::string marker;
};

/// Marks the characters from `begin` to `end` (counted in 16-bit units, clamped to the text); an empty part
/// is marked by one "^" at its place. Wide characters count two columns, combining ones none. Only the part
/// around `begin` is shown of a long text, as `support::getShown` has it.
MarkedTextS markText(std::u16string_view text, std::size_t begin, std::size_t end);

/// The number, from 1, of the character at `index`, counted in code points.
std::size_t countColumn(std::u16string_view text, std::size_t index);

/// How many columns of a terminal a character takes: 0 (combining), 1 or 2 (wide).
unsigned getColumnWidth(char32_t c);

}  // namespace zolt::cli
