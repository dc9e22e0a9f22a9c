#include <algorithm>

#include "zolt/ved/tree/detail/row_index.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

template <class ListT>
auto nth(ListT& list, std::size_t i) {
  return list.begin() + static_cast<std::ptrdiff_t>(i);
}

/// Where `std::rotate` puts what was at `i`.
std::uint32_t rotated(std::uint32_t i, std::size_t first, std::size_t middle, std::size_t last) {
  if (i < first || i >= last) return i;
  return static_cast<std::uint32_t>(i < middle ? i + (last - middle) : i - (middle - first));
}

bool reaches(Node4C const& cell, RowExtentS const& extent) {
  return cell.getMidHeight() >= extent.axis && cell.getHeight() - cell.getMidHeight() >= extent.bottom;
}

bool touches(Node4C const& cell, RowExtentS const& extent) {
  return cell.getMidHeight() >= extent.axis || cell.getHeight() - cell.getMidHeight() >= extent.bottom;
}

}  // namespace

void RowIndexC::placeColumns(std::vector<std::int32_t> edges) {
  edges_ = std::move(edges);
  for (auto const& stretch : stretches_) stretch->columns = edges_.data();
}

void RowIndexC::noteRowsInserted(std::size_t row, std::size_t count) {
  replace(row, 0, std::vector<std::uint32_t>(count, stretches_[0]->count));
  for (std::size_t k = row; k < row + count; ++k) {
    stretches_[k]->columns = edges_.empty() ? nullptr : edges_.data();
  }
  for (TableColumnS& column : columns_) {
    if (column.widest != TableColumnS::unknown && column.widest >= row) {
      column.widest += static_cast<std::uint32_t>(count);
    }
  }
}

void RowIndexC::noteRowsRemoved(Node4C const& table, std::size_t row, std::size_t count) {
  std::size_t const end = row + count;
  std::size_t const columns = stretches_[0]->count;
  // In most tables the row beside those that go is as wide.
  std::size_t const beside = end < stretches_.size() ? end : row - 1;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    TableColumnS& column = columns_[i];
    if (column.widest == TableColumnS::unknown) continue;
    if (column.widest >= row && column.widest < end) {
      bool const isAsWide =
          beside < stretches_.size() &&
          table.child(static_cast<unsigned long>(beside * columns + i))->getWidth() == column.width;
      column.widest = isAsWide ? static_cast<std::uint32_t>(beside) : TableColumnS::unknown;
    }
    if (column.widest != TableColumnS::unknown && column.widest >= end) {
      column.widest -= static_cast<std::uint32_t>(count);
    }
  }
  replace(row, count, {});
}

void RowIndexC::noteRowsRotated(std::size_t first, std::size_t middle, std::size_t last) {
  std::rotate(nth(stretches_, first), nth(stretches_, middle), nth(stretches_, last));
  countFirst(first);
  for (TableColumnS& column : columns_) column.widest = rotated(column.widest, first, middle, last);
}

void RowIndexC::noteColumnsInserted(std::size_t column, std::size_t count) {
  for (auto const& stretch : stretches_) stretch->count += static_cast<std::uint32_t>(count);
  countFirst(0);
  if (!columns_.empty()) {
    columns_.insert(nth(columns_, column), count, TableColumnS());
    edges_.insert(nth(edges_, column), count, 0);
    placeColumns(std::move(edges_));
  }
  markColumns(column, column + count);
}

void RowIndexC::noteColumnsRemoved(Node4C const& table, std::size_t column, std::size_t count) {
  std::size_t const end = column + count;
  std::size_t const beside = end < stretches_[0]->count ? end : column - 1;
  for (auto const& stretch : stretches_) {
    // A row may become lower, unless the cell beside those that go is as high.
    auto const cellAt = [&](std::size_t i) -> Node4C const& {
      return *table.child(static_cast<unsigned long>(stretch->first + i));
    };
    for (std::size_t i = column; i < end && !(stretch->stale & STALE_LAYOUT); ++i) {
      bool const isLower =
          touches(cellAt(i), stretch->sum.extent) && !reaches(cellAt(beside), stretch->sum.extent);
      if (isLower) stretch->stale |= STALE_LAYOUT;
    }
  }
  for (auto const& stretch : stretches_) stretch->count -= static_cast<std::uint32_t>(count);
  countFirst(0);
  if (!columns_.empty()) {
    columns_.erase(nth(columns_, column), nth(columns_, end));
    edges_.erase(nth(edges_, column), nth(edges_, end));
    placeColumns(std::move(edges_));
  }
  markColumns(column, column);
}

void RowIndexC::noteColumnsRotated(std::size_t first, std::size_t middle, std::size_t last) {
  if (!columns_.empty()) std::rotate(nth(columns_, first), nth(columns_, middle), nth(columns_, last));
  markColumns(first, last);
}

/// Notes that the columns from `first` to `end` are others than before in every row, and those beside them
/// the same.
void RowIndexC::markColumns(std::size_t first, std::size_t end) {
  for (ColumnMarkS& mark : columnMarks_) {
    mark.front = std::min(mark.front, static_cast<std::uint32_t>(first));
    mark.back = std::min(mark.back, static_cast<std::uint32_t>(stretches_[0]->count - end));
  }
}

std::pair<std::size_t, std::size_t> RowIndexC::findMarkedCells(std::size_t k, StaleE stale) const {
  RowStretchS const& stretch = *stretches_[k];
  if (stretch.stale & stale) return {0, stretch.count};
  ColumnMarkS const& mark = crefColumnMark(stale);
  if (!mark.isSet()) return {0, 0};
  return {mark.front, std::max<std::size_t>(mark.front, stretch.count - mark.back)};
}

namespace {

/// The first of `count` stretches that ends at `from` or after, and the first after it that begins after
/// `to`.
template <class BeginT, class EndT>
std::pair<std::size_t, std::size_t> findBetween(std::size_t count, long from, long to, BeginT begin,
                                                EndT end) {
  auto const findFirst = [count](std::size_t low, auto isPast) {
    for (std::size_t high = count; low < high;) {
      std::size_t const middle = low + (high - low) / 2;
      if (isPast(middle)) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    return low;
  };
  std::size_t const first = findFirst(0, [&](std::size_t i) { return end(i) >= from; });
  return {first, findFirst(first, [&](std::size_t i) { return begin(i) > to; })};
}

}  // namespace

std::pair<std::size_t, std::size_t> RowIndexC::findRows(long top, long bottom) const {
  auto const begin = [this](std::size_t k) { return long{stretches_[k]->dy}; };
  return findBetween(stretches_.size(), top, bottom, begin, [&](std::size_t k) {
    return begin(k) + stretches_[k]->sum.extent.axis + stretches_[k]->sum.extent.bottom;
  });
}

std::pair<std::size_t, std::size_t> RowIndexC::findColumns(long left, long right) const {
  auto const begin = [this](std::size_t i) { return long{edges_[i]}; };
  return findBetween(edges_.size(), left, right, begin,
                     [&](std::size_t i) { return begin(i) + columns_[i].width; });
}

std::uint8_t RowIndexC::getMarks(std::size_t column) const {
  unsigned marks = 0;
  for (StaleE const stale : {STALE_CHECK, STALE_LAYOUT, STALE_RECORD, STALE_REACH}) {
    ColumnMarkS const& mark = crefColumnMark(stale);
    if (mark.isSet() && column >= mark.front && column + mark.back < stretches_[0]->count) marks |= stale;
  }
  return static_cast<std::uint8_t>(marks);
}

}  // namespace zolt::math::ved
