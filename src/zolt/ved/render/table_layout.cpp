#include "zolt/ved/render/table_layout.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::math::ved {

/// Places the cells of one table. A large table keeps its rows as stretches and its columns beside them; then
/// only rows with a cell that has been laid out, and columns whose width changes, are looked at.
class TableLayoutC {
 public:
  TableLayoutC(Node4C& table, TableSpacesS const& spaces, AlignmentE alignment)
      : table_(table),
        spaces_(spaces),
        alignment_(alignment),
        index_(table.crefState().index.get()),
        numColumns_(countColumns(table)),
        numRows_(countTableRows(table)),
        columns_(index_ ? index_->refColumns() : ownColumns_),
        extents_(index_ ? 0 : numRows_) {}

  void layout(GraphicsABC const& graphics) {
    measure();
    std::vector<std::int32_t> edges(numColumns_);
    long x = spaces_.left;
    for (unsigned long i = 0; i < numColumns_; ++i) {
      edges[i] = static_cast<std::int32_t>(x);
      x += columns_[i].width + spaces_.columns;
    }
    if (index_) {
      index_->placeColumns(std::move(edges));
      edges.assign(numColumns_, 0);  // the cells are moved with the columns
    }
    long y = 0;
    for (unsigned long row = 0; row < numRows_; ++row) {
      if (row > 0) y += spaces_.rows;
      if (index_) (*index_)[row].dy = static_cast<std::int32_t>(y);
      placeCells(row, edges, index_ ? 0 : y);
      y += refExtent(row).axis + refExtent(row).bottom;
      if (index_) (*index_)[row].stale &= static_cast<std::uint8_t>(~STALE_LAYOUT);
    }
    if (index_) index_->clearColumnMark(STALE_LAYOUT);
    for (unsigned long const column : changed_) {
      for (unsigned long row = 0; row < numRows_; ++row) align(row, column, edges[column]);
    }
    table_.setWidth(x - spaces_.columns + spaces_.right);
    table_.setHeight(y);
    table_.setMidHeight((y + 2 * graphics.getTextMidHeight({}) - graphics.getTextHeight({})) / 2);
  }

 private:
  bool isMarked(unsigned long row) const { return !index_ || ((*index_)[row].stale & STALE_LAYOUT); }
  /// The cells of a row that have been laid out: the first, and the end of them.
  std::pair<std::size_t, std::size_t> findCells(unsigned long row) const {
    if (index_) return index_->findMarkedCells(row, STALE_LAYOUT);
    return {0, numColumns_};
  }
  RowExtentS& refExtent(unsigned long row) { return index_ ? (*index_)[row].sum.extent : extents_[row]; }
  Node4C& refCell(unsigned long row, unsigned long column) const {
    return *table_.child(row * numColumns_ + column);
  }

  void measure() {
    bool const afresh = columns_.size() != numColumns_;
    if (afresh) columns_.assign(numColumns_, {});
    std::vector<bool> narrower(numColumns_, false);
    for (unsigned long row = 0; row < numRows_; ++row) {
      RowExtentS& extent = refExtent(row);
      if (isMarked(row)) {
        extent = RowExtentS();
        extent.axis = extent.bottom = 0;
      }
      RowExtentS const before = extent;
      auto const [from, end] = findCells(row);
      for (unsigned long i = from; i < end; ++i) {
        Node4C const& cell = refCell(row, i);
        extent.require(cell.getMidHeight());
        extent.include(0, cell.getHeight() - cell.getMidHeight());
        TableColumnS& column = columns_[i];
        bool const wasWidest = !afresh && column.widest == row;
        if (cell.getWidth() > column.width) {
          column = {static_cast<std::int32_t>(cell.getWidth()), static_cast<std::uint32_t>(row)};
          changed_.push_back(i);
        } else if (wasWidest && cell.getWidth() < column.width) {
          narrower[i] = true;
        }
      }
      // New cells may move the others of their row.
      bool const isMoved = extent.axis != before.axis || extent.bottom != before.bottom;
      if (index_ && isMoved) (*index_)[row].stale |= STALE_LAYOUT;
    }
    for (unsigned long i = 0; i < numColumns_; ++i) {
      if (narrower[i] || columns_[i].widest == TableColumnS::unknown) measureColumn(i);
    }
    std::sort(changed_.begin(), changed_.end());
    changed_.erase(std::unique(changed_.begin(), changed_.end()), changed_.end());
    // All rows are placed then.
    if (afresh) changed_.clear();
  }

  void measureColumn(unsigned long column) {
    TableColumnS widest;
    for (unsigned long row = 0; row < numRows_; ++row) {
      auto const width = static_cast<std::int32_t>(refCell(row, column).getWidth());
      if (width > widest.width) widest = {width, static_cast<std::uint32_t>(row)};
    }
    columns_[column] = widest;
    changed_.push_back(column);
  }

  void placeCells(unsigned long row, std::vector<std::int32_t> const& edges, long y) {
    auto const [from, end] = findCells(row);
    for (unsigned long i = from; i < end; ++i) {
      align(row, i, edges[i]);
      Node4C& cell = refCell(row, i);
      cell.dy_ = static_cast<std::int32_t>(y + refExtent(row).axis - cell.getMidHeight());
    }
  }

  void align(unsigned long row, unsigned long column, long edge) {
    Node4C& cell = refCell(row, column);
    long const spare = alignment_ == ALIGNED_CENTRE ? columns_[column].width - cell.getWidth() : 0;
    cell.dx_ = static_cast<std::int32_t>(edge + spare / 2);
  }

  Node4C& table_;
  TableSpacesS const& spaces_;
  AlignmentE const alignment_;
  RowIndexC* const index_;  // null in a small table
  unsigned long const numColumns_;
  unsigned long const numRows_;
  std::vector<TableColumnS> ownColumns_;
  std::vector<TableColumnS>& columns_;
  std::vector<RowExtentS> extents_;     // of the rows of a small table: above the axis, and below
  std::vector<unsigned long> changed_;  // the columns of another width
};

void layoutTable(Node4C& table, TableSpacesS const& spaces, AlignmentE alignment,
                 GraphicsABC const& graphics) {
  TableLayoutC(table, spaces, alignment).layout(graphics);
}

}  // namespace zolt::math::ved
