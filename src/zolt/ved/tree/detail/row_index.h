// Internal to Node4C: the stretches of a long row and their sums.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "zolt/ved/tree/detail/stretch_sums.h"
#include "zolt/ved/tree/node_record.h"

namespace zolt::math::ved {

class Node4C;

/// The work that is due for a node or for something inside it.
enum StaleE : std::uint8_t {
  STALE_CHECK = 1,
  STALE_LAYOUT = 2,
  STALE_RECORD = 4,
  STALE_REACH = 8,
  STALE_ALL = 15
};

/// A stretch of a row: pairs of a text and another item; the last stretch of a row ends in a text. The
/// numbers and positions that its items keep are relative to the stretch. In a large table each of its rows
/// is a stretch, and the positions of its cells are relative to their columns.
struct RowStretchS {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::int32_t dx = 0;                    // of the stretch
  std::int32_t dy = 0;                    // of the row's axis
  std::int32_t const* columns = nullptr;  // the left edges of a table's columns
  std::uint8_t stale = 0;
  BracketSumS brackets;
  RowSumS sum;
  TextReachS reach;           // in a row
  std::int32_t overhang = 0;  // in a table: how far texts reach out of the cells around them, at most
  NodeRecordPointerC record;

  /// How far an item is moved by what is not its own.
  std::int32_t shiftOf(std::uint32_t item) const { return columns ? dx + columns[item] : dx; }
};

/// A column of a large table.
struct TableColumnS {
  static constexpr std::uint32_t unknown = std::numeric_limits<std::uint32_t>::max();

  std::int32_t width = 0;
  std::uint32_t widest = unknown;  // the row of a cell that is as wide
};

/// Columns of a large table that have changed in every row, also in rows that are not marked.
struct ColumnMarkS {
  static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

  std::uint32_t front = none;  // so many columns on the left are as they were
  std::uint32_t back = none;   // and so many on the right

  bool isSet() const { return front != none; }
};

/// The stretches of a long row, with which the work for an edit depends on the edit and hardly on the row:
/// passes examine the items only of changed stretches and use the sums of the others. The row keeps the index
/// up to date when items are inserted and removed; normalisation decides where stretches begin.
///
/// An edit costs the items of one stretch plus the number of stretches, so a longer row has longer stretches.
class RowIndexC {
 public:
  /// The number of items in a stretch of the shortest long rows. Tests set a different number (even, at least
  /// 4) for the rows of their thread, so that small formulas use the code for long ones; 0 restores the
  /// ordinary number. False in builds in which it cannot be set.
  static std::size_t leastLength();
  [[nodiscard]] static bool setLeastLength(std::size_t length);

  /// Rows of at least this many items get an index; rows that shrink below half of it lose theirs.
  static std::size_t leastItems() { return 2 * leastLength(); }

  /// Makes the index of a row of `count` items, which are all in one stretch at first.
  explicit RowIndexC(std::size_t count);

  std::size_t getUsualLength() const { return usualLength_; }
  /// Whether these stretches are of use for `count` items, or too short, or no longer needed.
  bool fits(std::size_t count) const {
    return count >= leastItems() / 2 && count <= 16 * usualLength_ * usualLength_;
  }

  std::size_t size() const { return stretches_.size(); }
  RowStretchS& operator[](std::size_t k) { return *stretches_[k]; }
  RowStretchS const& operator[](std::size_t k) const { return *stretches_[k]; }
  /// The number of the stretch that holds item i; the last stretch when i is after all items.
  std::size_t find(std::size_t i) const;
  RowStretchS& at(std::size_t i) { return *stretches_[find(i)]; }

  /// To be called after items were inserted, or before items are removed.
  void noteInserted(std::size_t i, std::size_t count, std::uint8_t stale);
  void noteRemoved(std::size_t i, std::size_t count, std::uint8_t stale);
  /// Item i has changed, which may also change the meaning of its neighbours.
  void noteChanged(std::size_t i, std::uint8_t stale);

  void mark(std::uint8_t stale);
  void clear(StaleE stale);

  // ---- Tables, whose rows are the stretches (row_index_table.cpp) ---------------------------------------
  /// The columns of a table; empty in a row and before the first layout.
  std::vector<TableColumnS>& refColumns() { return columns_; }
  /// Where the columns begin; the cells are moved with them.
  void placeColumns(std::vector<std::int32_t> edges);
  /// To be called after rows were inserted or rotated (`std::rotate`), or before rows are removed. Only new
  /// rows are marked.
  void noteRowsInserted(std::size_t row, std::size_t count);
  void noteRowsRemoved(Node4C const& table, std::size_t row, std::size_t count);
  void noteRowsRotated(std::size_t first, std::size_t middle, std::size_t last);
  /// The same for columns, which are marked in all rows at once.
  void noteColumnsInserted(std::size_t column, std::size_t count);
  void noteColumnsRemoved(Node4C const& table, std::size_t column, std::size_t count);
  void noteColumnsRotated(std::size_t first, std::size_t middle, std::size_t last);
  ColumnMarkS const& crefColumnMark(StaleE stale) const { return columnMarks_[numberOf(stale)]; }
  void clearColumnMark(StaleE stale) { columnMarks_[numberOf(stale)] = {}; }
  /// The first stretch from number k on that has something marked; their number when there is none.
  std::size_t findMarkedStretch(std::size_t k, StaleE stale) const {
    if (crefColumnMark(stale).isSet()) return k;
    while (k < stretches_.size() && !(stretches_[k]->stale & stale)) ++k;
    return k;
  }
  /// Which items of stretch k, or cells of row k, may have the mark: the first, and the end of them.
  std::pair<std::size_t, std::size_t> findMarkedCells(std::size_t k, StaleE stale) const;
  /// The rows, or columns, of a table that is laid out which reach into a stretch of its height, or width:
  /// the first one, and the end of them.
  std::pair<std::size_t, std::size_t> findRows(long top, long bottom) const;
  std::pair<std::size_t, std::size_t> findColumns(long left, long right) const;
  /// The marks of a column.
  std::uint8_t getMarks(std::size_t column) const;

  /// Replaces `count` stretches from k on by stretches of these lengths, in which all marks are set.
  void replace(std::size_t k, std::size_t count, std::vector<std::uint32_t> const& lengths);

 private:
  void markAround(std::size_t k, std::size_t i, std::uint8_t stale);
  void countFirst(std::size_t k);
  void markColumns(std::size_t first, std::size_t end);
  static std::size_t numberOf(StaleE stale) { return stale == STALE_REACH ? 3 : stale / 2U; }

  std::size_t usualLength_ = leastLength();
  std::vector<std::unique_ptr<RowStretchS>> stretches_;
  std::vector<TableColumnS> columns_;
  std::vector<std::int32_t> edges_;
  ColumnMarkS columnMarks_[4];  // by `numberOf`
};

/// The stretches of a row for one pass over the row: those in the index of a long row, or one stretch for a
/// short row, which this object holds.
class RowStretchesC {
 public:
  /// `index` is null for a short row; `items` is the number of items in the row.
  RowStretchesC(RowIndexC* index, std::size_t items) : index_(index) {
    only_.count = static_cast<std::uint32_t>(items);
    only_.stale = STALE_ALL;
  }

  std::size_t size() const { return index_ ? index_->size() : 1; }
  RowStretchS& operator[](std::size_t k) { return index_ ? (*index_)[k] : only_; }
  std::size_t getUsualLength() const { return index_ ? index_->getUsualLength() : RowIndexC::leastLength(); }
  void noteInserted(std::size_t i, std::size_t count) {
    if (index_) return index_->noteInserted(i, count, STALE_ALL);
    only_.count += static_cast<std::uint32_t>(count);
  }
  void noteRemoved(std::size_t i, std::size_t count) {
    if (index_) return index_->noteRemoved(i, count, STALE_ALL);
    only_.count -= static_cast<std::uint32_t>(count);
  }

 private:
  RowIndexC* index_;
  RowStretchS only_;
};

}  // namespace zolt::math::ved
