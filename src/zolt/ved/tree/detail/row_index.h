// Internal to Node4C: what is known about the stretches of a long row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "zolt/ved/tree/node_record.h"

namespace zolt::math::ved {

class Node4C;

/// How far items that stand on one level of brackets reach, measured from the axis of their row.
struct RowExtentS {
  static constexpr long nothing = std::numeric_limits<std::int32_t>::min() / 2;

  long axis = nothing;  // how far below the row's top the axis must be at least, without the brackets around
  long top = 0;         // of the highest item
  long bottom = nothing;    // of the lowest item
  long highest = -nothing;  // smallest bottom of an item

  void include(long itemTop, long itemBottom) {
    if (itemTop < top) top = itemTop;
    if (itemBottom > bottom) bottom = itemBottom;
    if (itemBottom < highest) highest = itemBottom;
  }
  void require(long itemAxis) {
    if (itemAxis > axis) axis = itemAxis;
  }
  void include(RowExtentS const& other) {
    require(other.axis);
    if (other.top < top) top = other.top;
    if (other.bottom > bottom) bottom = other.bottom;
    if (other.highest < highest) highest = other.highest;
  }
};

/// A bracket without a partner in its stretch.
struct RowBracketS {
  RowExtentS before;  // of what stands between it and the bracket before it
  Node4C* bracket;
  Node4C* power;  // the exponent on the group that it closes; may be null
};

/// The supplied brackets of one kind in a stretch: those that open at the start of the row, or those that
/// close at its end.
struct SuppliedBracketsS {
  std::uint32_t count = 0;
  bool others = false;     // whether the stretch holds anything but them and empty texts
  bool overtaken = false;  // whether anything of that stands outside one of them
};

/// A stretch of a row: pairs of a text and another item; the last stretch of a row ends in a text. What its
/// items know of their places is relative to the stretch.
struct RowStretchS {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::int32_t dx = 0;  // of the stretch
  std::int32_t dy = 0;  // of the row's axis
  std::uint8_t stale = 0;
  std::uint32_t opens = 0;  // typed brackets without a partner in the stretch
  std::uint32_t closes = 0;
  SuppliedBracketsS autoOpens;
  SuppliedBracketsS autoCloses;
  long width = 0;
  std::vector<RowBracketS> brackets;
  RowExtentS extent;  // of what stands behind the last of the brackets
  NodeRecordPointerC record;
};

/// The stretches of a long row, so that the work for an edit follows the edit: only stretches with changes
/// are looked at item by item, of the others their sums. The row keeps it up to date while its items come and
/// go; normalisation decides where stretches begin.
///
/// The work for an edit is that of a stretch item by item and of the row stretch by stretch, so the longer
/// the row the longer its stretches.
class RowIndexC {
#ifdef ZOLT_SHORT_STRETCHES
  static constexpr std::size_t least_usual_length = 4;  // so that the small formulas of tests have stretches
#else
  static constexpr std::size_t least_usual_length = 96;
#endif

 public:
  /// Rows of at least so many items get an index, rows that shrink below half of it lose theirs.
  static constexpr std::size_t min_items = 2 * least_usual_length;

  /// For a row of so many items, all in one stretch at first.
  explicit RowIndexC(std::size_t count);

  std::size_t getUsualLength() const { return usualLength_; }
  /// Whether the row has grown so much that its stretches should be longer.
  bool isOutgrown(std::size_t count) const { return count > 16 * usualLength_ * usualLength_; }

  std::size_t size() const { return stretches_.size(); }
  RowStretchS& operator[](std::size_t k) { return *stretches_[k]; }
  RowStretchS const& operator[](std::size_t k) const { return *stretches_[k]; }
  /// The number of the stretch that holds item i; of the last one when i is behind all items.
  std::size_t find(std::size_t i) const;
  RowStretchS& at(std::size_t i) { return *stretches_[find(i)]; }

  /// Items came, or are about to go.
  void noteInserted(std::size_t i, std::size_t count, std::uint8_t stale);
  void noteRemoved(std::size_t i, std::size_t count, std::uint8_t stale);
  /// Item i is another one; so may be what its neighbours stand for.
  void noteChanged(std::size_t i, std::uint8_t stale);

  /// For the layout, which would have to ask for as much memory on every key.
  std::vector<RowBracketS>& refOpenBrackets() { return openBrackets_; }

  void mark(std::uint8_t stale);
  void clear(std::uint8_t stale);

  /// Puts stretches of these lengths in the place of `count` stretches from k on. All marks are set in them.
  void replace(std::size_t k, std::size_t count, std::vector<std::uint32_t> const& lengths);

 private:
  void markAround(std::size_t k, std::size_t i, std::uint8_t stale);

  std::size_t usualLength_ = least_usual_length;
  std::vector<std::unique_ptr<RowStretchS>> stretches_;
  std::vector<RowBracketS> openBrackets_;
};

}  // namespace zolt::math::ved
