#include <algorithm>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

namespace {

// A node has five bits for how far texts reach out of it: the number of the least of these bounds that is not
// exceeded. They are 0, 1, 2, 3, 4, 6, 8, 12, 16 and so on; the last one is more than any formula has.
constexpr int last_bound = 31;

long boundOf(int number) {
  if (number == last_bound) return 1L << 28;
  return number < 4 ? number : long{2 + number % 2} << (number / 2 - 1);
}

int findBound(long overhang) {
  int number = 0;
  while (number < last_bound && boundOf(number) < overhang) ++number;
  return number;
}

/// Whether it is, or may hold, a text.
bool hasTexts(Node4C const& node) { return node.getType() == NODE4_TEXT || node.numChildren() > 0; }

void raise(std::int32_t& reach, long value) { reach = std::max(reach, static_cast<std::int32_t>(value)); }

}  // namespace

// Rows leave out the gap after their last item, for example, so that an empty text may be just outside its
// row's box.
long Node4C::measureReach() const {
  auto const enter = [](Node4C const& node) {
    return node.state_.stale & STALE_REACH ? WALK_INTO : WALK_PAST;
  };
  walkTree(
      *this, enter, [](Node4C const& node) { node.noteReach(); },
      [](Node4C const& node, unsigned long& next) { return node.findMarked(next, STALE_REACH); });
  return boundOf(state_.reach);
}

/// Notes how far texts reach out of a node in whose children this is noted.
void Node4C::noteReach() const {
  TextReachS all;
  long overhang = 0;
  auto const include = [](TextReachS& reach, Node4C const& item) {
    if (!hasTexts(item)) return;
    long const bound = boundOf(item.state_.reach);
    raise(reach.left, bound - item.dx_);
    raise(reach.right, bound + item.dx_ + item.width_);
    raise(reach.top, bound - item.dy_);
    raise(reach.bottom, bound + item.dy_ + item.height_);
  };
  if (RowIndexC* const index = state_.index.get()) {
    for (std::size_t k = 0; k < index->size(); ++k) {
      RowStretchS& stretch = (*index)[k];
      auto const [from, end] = index->findMarkedCells(k, STALE_REACH);
      if (stretch.stale & STALE_REACH) {
        stretch.reach = TextReachS();
        stretch.overhang = 0;
        stretch.stale &= static_cast<std::uint8_t>(~STALE_REACH);
      }
      for (std::size_t i = stretch.first + from; i < stretch.first + end; ++i) {
        include(stretch.reach, *children_[i]);
        raise(stretch.overhang, boundOf(children_[i]->state_.reach));
      }
      if (type_ == NODE4_OPERATOR) {  // the cells of a table are in its box
        overhang = std::max(overhang, long{stretch.overhang});
        continue;
      }
      raise(all.left, stretch.reach.left - stretch.dx);
      raise(all.right, stretch.reach.right + stretch.dx);
      raise(all.top, stretch.reach.top - stretch.dy);
      raise(all.bottom, stretch.reach.bottom + stretch.dy);
    }
    index->clearColumnMark(STALE_REACH);
  } else {
    for (Node4C const* child : children_) include(all, *child);
  }
  overhang = std::max<long>({overhang, all.left, all.right - width_, all.top, all.bottom - height_});
  state_.reach = findBound(overhang) & last_bound;
  unmark(STALE_REACH);
}

}  // namespace zolt::math::ved
