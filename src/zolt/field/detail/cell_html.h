#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::field::detail {

using oss::wstring;

/// The block of cells in the plain text of a copy (`ClipboardContentS::plainText`: tabs between cells, a line
/// for each row) as a table in HTML, for programs that take that. Empty when the text has no more than one
/// cell.
[[nodiscard]] wstring cellsToHtml(wstring const& plainText);

/// The cells of the first table in HTML as such plain text. A raised or lowered part is an exponent or an
/// index, a cell that spans several columns or rows is followed by empty ones; a number is the one that the
/// program computes with (`hasExactNumbers`), where the page has it. Empty when there is no table of more
/// than one cell, or one beyond `ved::limits::max_table_cells`. Time and memory follow the text.
[[nodiscard]] wstring cellsFromHtml(wstring const& html);

/// Whether programs for tables have left their numbers beside what is shown of them, "1.5" beside "1,50".
[[nodiscard]] bool hasExactNumbers(wstring const& html);

}  // namespace zolt::field::detail
