// Internal to Node4C: what is known about the stretches of a long row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "zolt/ved/tree/node4_type.h"
#include "zolt/ved/tree/node_record.h"

namespace zolt::math::ved {

class Node4C;

/// What has to be done again for a node or for something inside it.
enum StaleE : std::uint8_t {
  STALE_CHECK = 1,
  STALE_LAYOUT = 2,
  STALE_RECORD = 4,
  STALE_ALL = 7,
  STALE_BRACKETS = 8,
  STALE_VISIT = 9
};

/// How far the items on one level of brackets reach, measured from the axis of
/// their row.
struct RowExtentS {
  static constexpr long none = std::numeric_limits<std::int32_t>::min() / 2;

  long axis = none;    // how far below the row's top the axis must be, but for the
                       // brackets around
  long top = 0;        // of the highest item
  long bottom = none;  // of the lowest item

  void include(long itemTop, long itemBottom) {
    if (itemTop < top) top = itemTop;
    if (itemBottom > bottom) bottom = itemBottom;
  }
  void require(long itemAxis) {
    if (itemAxis > axis) axis = itemAxis;
  }
  void include(RowExtentS const& other) {
    require(other.axis);
    include(other.top, other.bottom);
  }
};

/// A bracket without a partner in its stretch.
struct RowBracketS {
  RowExtentS before;  // of what stands between it and the bracket before it
  Node4C* bracket;
  Node4C* power;  // the exponent on the group that it closes; may be null
};

/// What the layout of a stretch adds to that of its row.
struct RowSumS {
  long width = 0;
  std::vector<RowBracketS> brackets;  // closing ones, then opening ones
  RowExtentS extent;                  // of what comes after the last of the brackets
  long highestGroup = 0;              // the least bottom of what stands between two brackets
};

/// The brackets of a stretch, or of several, one after another.
struct BracketSumS {
  std::uint32_t opens = 0;  // typed ones without a partner
  std::uint32_t closes = 0;
  std::uint32_t autoOpens = 0;  // supplied ones
  std::uint32_t autoCloses = 0;
  bool hasContent = false;  // whether there is anything but supplied brackets and empty texts
  bool overtaken = false;   // whether anything of that is outside a supplied bracket

  /// Whether there is anything that a supplied bracket of this kind may not
  /// have outside it.
  bool hasOthers(Node4TypeE type) const {
    return hasContent || (type == NODE4_AUTO_OPEN ? autoCloses : autoOpens) > 0;
  }
  /// Adds an item, which is no empty text.
  void add(Node4TypeE type) {
    if (type == NODE4_AUTO_CLOSE) {
      ++autoCloses;
      return;
    }
    overtaken |= autoCloses > 0;
    if (type == NODE4_AUTO_OPEN) {
      overtaken |= hasContent;
      ++autoOpens;
      return;
    }
    hasContent = true;
    if (type == NODE4_OPEN) ++opens;
    if (type != NODE4_CLOSE) return;
    if (opens > 0) {
      --opens;
    } else {
      ++closes;
    }
  }
  void add(BracketSumS const& next) {
    overtaken |= next.overtaken || (next.autoOpens > 0 && hasOthers(NODE4_AUTO_OPEN)) ||
                 (autoCloses > 0 && next.hasOthers(NODE4_AUTO_CLOSE));
    hasContent |= next.hasContent;
    std::uint32_t const pairs = next.closes < opens ? next.closes : opens;
    opens += next.opens - pairs;
    closes += next.closes - pairs;
    autoOpens += next.autoOpens;
    autoCloses += next.autoCloses;
  }
  bool operator!=(BracketSumS const& other) const {
    return opens != other.opens || closes != other.closes || autoOpens != other.autoOpens ||
           autoCloses != other.autoCloses || hasContent != other.hasContent || overtaken != other.overtaken;
  }
};

/// A stretch of a row: pairs of a text and another item; the last stretch of a
/// row ends in a text. What its items know of their places is relative to the
/// stretch.
struct RowStretchS {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::int32_t dx = 0;  // of the stretch
  std::int32_t dy = 0;  // of the row's axis
  std::uint8_t stale = 0;
  BracketSumS brackets;
  RowSumS sum;
  NodeRecordPointerC record;
};

/// The stretches of a long row, so that the work for an edit follows the edit:
/// only stretches with changes are looked at item by item, of the others their
/// sums. The row keeps it up to date while its items come and go; normalisation
/// decides where stretches begin.
///
/// The work for an edit is that of a stretch item by item and of the row
/// stretch by stretch, so the longer the row the longer its stretches.
class RowIndexC {
 public:
  /// How many items a stretch has in the shortest of the long rows. Tests set
  /// another number, even and at least 4, for the rows of their thread, so that
  /// small formulas try what long ones need; false in builds in which it cannot
  /// be set. A null number sets the ordinary one.
  static std::size_t leastLength();
  [[nodiscard]] static bool setLeastLength(std::size_t length);

  /// Rows of at least so many items get an index, rows that shrink below half
  /// of it lose theirs.
  static std::size_t leastItems() { return 2 * leastLength(); }

  /// For a row of so many items, all in one stretch at first.
  explicit RowIndexC(std::size_t count);

  std::size_t getUsualLength() const { return usualLength_; }
  /// Whether the row has grown so much that its stretches should be longer.
  bool isOutgrown(std::size_t count) const { return count > 16 * usualLength_ * usualLength_; }

  std::size_t size() const { return stretches_.size(); }
  RowStretchS& operator[](std::size_t k) { return *stretches_[k]; }
  RowStretchS const& operator[](std::size_t k) const { return *stretches_[k]; }
  /// The number of the stretch that holds item i; of the last one when i is
  /// behind all items.
  std::size_t find(std::size_t i) const;
  RowStretchS& at(std::size_t i) { return *stretches_[find(i)]; }

  /// Items came, or are about to go.
  void noteInserted(std::size_t i, std::size_t count, std::uint8_t stale);
  void noteRemoved(std::size_t i, std::size_t count, std::uint8_t stale);
  /// Item i is another one; so may be what its neighbours stand for.
  void noteChanged(std::size_t i, std::uint8_t stale);

  void mark(std::uint8_t stale);
  void clear(std::uint8_t stale);

  /// Puts stretches of these lengths in the place of `count` stretches from k
  /// on. All marks are set in them.
  void replace(std::size_t k, std::size_t count, std::vector<std::uint32_t> const& lengths);

 private:
  void markAround(std::size_t k, std::size_t i, std::uint8_t stale);

  std::size_t usualLength_ = leastLength();
  std::vector<std::unique_ptr<RowStretchS>> stretches_;
};

/// The stretches of a row as a pass over the row sees them: those that a long
/// row keeps, or the one that a short row is, which lives here.
class RowStretchesC {
 public:
  /// `index` is null for a short row; `items` is the number of items in the row.
  RowStretchesC(RowIndexC* index, std::size_t items) : index_(index) {
    only_.count = static_cast<std::uint32_t>(items);
    only_.stale = STALE_ALL;
  }

  std::size_t size() const { return index_ ? index_->size() : 1; }
  RowStretchS& operator[](std::size_t k) { return index_ ? (*index_)[k] : only_; }
  void mark(std::uint8_t stale) {
    for (std::size_t k = 0; k < size(); ++k) (*this)[k].stale |= stale;
  }

 private:
  RowIndexC* index_;
  RowStretchS only_;
};

}  // namespace zolt::math::ved
