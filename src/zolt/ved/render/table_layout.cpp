#include "zolt/ved/render/table_layout.h"

#include <algorithm>
#include <vector>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::math::ved {

void layoutTable(Node4C& table, TableSpacesS const& spaces, AlignmentE alignment,
                 GraphicsABC const& graphics) {
  unsigned long const columns = countColumns(table);
  unsigned long const rows = countTableRows(table);
  std::vector<long> widths(columns, 0);
  for (unsigned long i = 0; i < rows * columns; ++i) {
    Node4C::max1stDim(widths[i % columns], table.child(i)->getWidth());
  }
  long y = 0;
  for (unsigned long row = 0; row < rows; ++row) {
    long axis = 0;
    long below = 0;
    for (unsigned long i = 0; i < columns; ++i) {
      Node4C const& cell = *cellAt(table, row, i);
      Node4C::max1stDim(axis, cell.getMidHeight());
      Node4C::max1stDim(below, cell.getHeight() - cell.getMidHeight());
    }
    if (row > 0) y += spaces.rows;
    long x = spaces.left;
    for (unsigned long i = 0; i < columns; ++i) {
      Node4C& cell = *cellAt(table, row, i);
      long const spare = widths[i] - cell.getWidth();
      cell.setDX(x + (alignment == ALIGNED_CENTRE ? spare / 2 : 0));
      cell.setDY(y + axis - cell.getMidHeight());
      x += widths[i] + spaces.columns;
    }
    y += axis + below;
    table.setWidth(x - spaces.columns + spaces.right);
  }
  table.setHeight(y);
  table.setMidHeight((y + 2 * graphics.getTextMidHeight({}) - graphics.getTextHeight({})) / 2);
}

}  // namespace zolt::math::ved
