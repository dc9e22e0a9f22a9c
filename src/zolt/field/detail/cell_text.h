#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::field::detail {

using oss::wstring;

/// The texts of a block of cells, as programs for tables exchange them: a tab between two cells, a line for
/// each row. A cell that has tabs, line ends or quotes in it is in double quotes, which are doubled in it.
struct CellTextsS {
  std::vector<wstring> cells;  ///< row by row
  unsigned long columns = 0;
};

enum CellMarkE {
  TABS_ONLY,  ///< a single column does not count
  TABS_OR_LINES
};

/// Whether the text has more than one cell.
bool hasCells(wstring const& text, CellMarkE marks);
/// Rows that are shorter than others get empty cells at their ends.
CellTextsS readCells(wstring const& text);
wstring writeCells(CellTextsS const& texts);

}  // namespace zolt::field::detail
