#pragma once

#include <cstddef>
#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using oss::wstring;

// Formulas in texts with tags, for whoever gets texts of unknown kind. Nothing here needs the text to be
// well-formed. Takes linear time.

/// The place of the first `math` element from `position` on, whatever its prefix, outside of comments;
/// `wstring::npos` when there is none.
[[nodiscard]] std::size_t findMathElement(std::u16string_view text, std::size_t position = 0);

/// The LaTeX that a page keeps beside a formula that it shows: in an annotation, in a script, as the text of
/// a `math` element or of a picture. Empty when there is none, or more than one.
[[nodiscard]] wstring findPageLatex(std::u16string_view page);

}  // namespace zolt::exchange
