#include "zolt/catalogue_extended/detail/row_line.h"

#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended::detail {

namespace {

oss::wstring const comma = u",";

/// The room before and after a comma; most of it is after it.
long commaRoom(GraphicsABC const& graphics) { return 3 * graphics.getMetric(0); }

}  // namespace

RowLineC::RowLineC(Node4C& construct, unsigned long first, unsigned long last)
    : construct_(construct), first_(first), last_(last) {}

void RowLineC::placeFrom(long left, GraphicsABC const& graphics) {
  right_ = left;
  above_ = below_ = 0;
  for (unsigned long i = first_; i < last_; ++i) {
    Node4C& row = *construct_.child(i);
    if (i == first_) row.selectFont(graphics);
    if (i > first_) right_ += graphics.getTextWidth(comma) + commaRoom(graphics);
    row.setDX(right_);
    right_ += row.getWidth();
    Node4C::max1stDim(above_, row.getMidHeight());
    Node4C::max1stDim(below_, row.getHeight() - row.getMidHeight());
  }
  construct_.selectFont(graphics);
}

void RowLineC::alignAt(long axis) {
  for (unsigned long i = first_; i < last_; ++i) {
    construct_.child(i)->setDY(axis - construct_.child(i)->getMidHeight());
  }
}

void RowLineC::drawCommas(Node4C const& construct, unsigned long first, unsigned long last,
                          GraphicsABC const& graphics, long x, long y) {
  for (unsigned long i = first + 1; i < last; ++i) {
    Node4C const& row = *construct.child(i);
    if (i == first + 1) row.selectFont(graphics);
    graphics.drawText(
        comma, x + row.getDX() - commaRoom(graphics) + graphics.getMetric(0) - graphics.getTextWidth(comma),
        y + row.getDY() + row.getMidHeight() - graphics.getTextMidHeight(comma));
  }
}

}  // namespace zolt::catalogue_extended::detail
