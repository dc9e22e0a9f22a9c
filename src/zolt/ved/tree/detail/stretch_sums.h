// Internal to Node4C: what is known of the items of a stretch, or of several, taken together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "zolt/ved/tree/node4_type.h"

namespace zolt::math::ved {

class Node4C;

/// How far the items on one level of brackets extend, in units, measured from the axis of their row.
struct RowExtentS {
  static constexpr long none = std::numeric_limits<std::int32_t>::min() / 2;

  long axis = none;    // the least distance from the row's top to the axis, without the brackets around
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
  RowExtentS before;  // of the items between it and the bracket before it
  Node4C* bracket;
  Node4C* power;  // the exponent on the group that it closes; may be null
};

/// What the layout of a stretch contributes to that of its row.
struct RowSumS {
  long width = 0;
  std::vector<RowBracketS> brackets;  // closing ones, then opening ones
  RowExtentS extent;                  // of the items after the last of the brackets
  long highestGroup = 0;              // the least bottom of any group in brackets
};

/// How far the texts in the items of a stretch reach, in units: to the left and the right of where the
/// stretch begins, above and below the axis of its row.
struct TextReachS {
  std::int32_t left = 0;
  std::int32_t right = 0;
  std::int32_t top = 0;
  std::int32_t bottom = 0;
};

/// The brackets of a stretch, or of several, one after another.
struct BracketSumS {
  std::uint32_t opens = 0;  // typed ones without a partner
  std::uint32_t closes = 0;
  std::uint32_t autoOpens = 0;  // supplied ones
  std::uint32_t autoCloses = 0;
  bool hasContent = false;  // whether there is anything but supplied brackets and empty texts
  bool overtaken = false;   // whether any of that is outside a supplied bracket

  std::uint32_t countSupplied(Node4TypeE type) const {
    return type == NODE4_AUTO_OPEN ? autoOpens : autoCloses;
  }
  /// Whether there is an item that must not be outside a supplied bracket of this kind.
  bool hasOthers(Node4TypeE type) const {
    return hasContent || (type == NODE4_AUTO_OPEN ? autoCloses : autoOpens) > 0;
  }
  /// Adds an item that is not an empty text.
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

/// The brackets among `count` items of a row from `first` on.
BracketSumS sumBrackets(Node4C const& row, std::size_t first, std::size_t count);

}  // namespace zolt::math::ved
