#include <algorithm>

#include "zolt/ved/limits.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/tree/tree_walk.h"
#include "zolt/ved/view/view_hold.h"

namespace zolt::math::ved {

namespace {

/// The boundary between the `size` characters of a text that is nearest to `x` (from the start of the text);
/// `width` measures beginnings. Equally near ones give the later. Widths only grow with the text, so a few
/// measurements do.
template <class WidthT>
unsigned long findBoundary(unsigned long size, long x, WidthT width) {
  // The smallest count from `first` on whose width exceeds `limit`; one past the text when none does.
  auto const findBeyond = [&](long limit, unsigned long first) {
    unsigned long last = size + 1;
    while (first < last) {
      unsigned long const middle = first + (last - first) / 2;
      if (width(middle) > limit) {
        last = middle;
      } else {
        first = middle + 1;
      }
    }
    return first;
  };
  unsigned long const beyond = findBeyond(x, 0);
  if (beyond == 0) return 0;
  unsigned long const before = beyond - 1;
  if (beyond > size) return before;
  long const next = width(beyond);
  return next - x > x - width(before) ? before : findBeyond(next, beyond) - 1;
}

bool isInside(long at, long start, long length) { return start <= at && at < start + length; }

/// How far `at` lies outside of a stretch whose end is not part of it, yet at no distance.
long distanceTo(long at, long start, long length) {
  if (at < start) return start - at;
  return isInside(at, start, length) ? 0 : at - length - start;
}

/// The search for the text nearest to a point.
class NearestTextC {
 public:
  /// `overhang` is how far texts reach out of the boxes around them, at most.
  NearestTextC(long x, long y, long overhang) : x_(x), y_(y), overhang_(overhang) {}

  Node4C const* text = nullptr;  ///< null when none is within the radius
  long left = 0;                 ///< of that text

  // Tree order: the earliest of equally near texts wins.
  void search(Node4C const& row) {
    long x = 0;
    long y = 0;
    auto const enter = [&](Node4C const& node) {
      long const nodeLeft = x + node.getDX();
      long const nodeTop = y + node.getDY();
      if (node.getType() == NODE4_TEXT) return examine(node, nodeLeft, nodeTop) ? WALK_STOP : WALK_PAST;
      if (node.numChildren() == 0 || !isWorthVisiting(node, nodeLeft, nodeTop)) return WALK_PAST;
      x = nodeLeft;
      y = nodeTop;
      return WALK_INTO;
    };
    auto const leave = [&](Node4C const& node) {
      x -= node.getDX();
      y -= node.getDY();
    };
    walkTree(row, enter, leave, [&](Node4C const& node, unsigned long& next) {
      bool const isTable = node.getType() == NODE4_OPERATOR && node.crefState().index;
      return isTable ? findNextCell(node, next, x, y) : findNext(node, next, x);
    });
  }

 private:
  /// The next child of a node at `x` from `next` on, unless that and all after it are out of reach.
  Node4C const* findNext(Node4C const& node, unsigned long& next, long x) const {
    bool const isRow = node.getType() == NODE4_LINE;
    if (isRow && next == 0) next = findFirst(node, x);
    if (next == node.numChildren()) return nullptr;
    if (isRow && x + leftEnd(node, next) - overhang_ - limits::hit_radius > x_) return nullptr;
    return node.child(next++);
  }

  /// The same in a large table at (x, y), of which only cells within reach are looked at.
  Node4C const* findNextCell(Node4C const& table, unsigned long& next, long x, long y) const {
    RowIndexC const& index = *table.crefState().index;
    long const reach = overhang_ + limits::hit_radius;
    auto const columns = index.findColumns(x_ - x - reach, x_ - x + reach);
    auto const rows = index.findRows(y_ - y - reach, y_ - y + reach);
    unsigned long const width = countColumns(table);
    unsigned long row = std::max<unsigned long>(next / width, rows.first);
    unsigned long column = std::max<unsigned long>(row * width < next ? next % width : 0, columns.first);
    if (column >= columns.second) {
      ++row;
      column = columns.first;
    }
    if (row >= rows.second || columns.first == columns.second) return nullptr;
    next = row * width + column;
    return table.child(next++);
  }

  /// The first item of a row at `x` that may be near enough. The items follow one another.
  unsigned long findFirst(Node4C const& row, long x) const {
    unsigned long first = 0;
    unsigned long last = row.numChildren() - 1;
    while (first < last) {
      unsigned long const middle = first + (last - first) / 2;
      if (x + rightEnd(row, middle) + overhang_ + limits::hit_radius < x_) {
        first = middle + 1;
      } else {
        last = middle;
      }
    }
    return first;
  }

  /// Whether a text inside `node`, whose top-left corner is at (x, y), may contain the point or be nearer to
  /// it than the best one so far.
  bool isWorthVisiting(Node4C const& node, long x, long y) const {
    long const h = distanceTo(x_, x - overhang_, node.getWidth() + 2 * overhang_);
    long const v = distanceTo(y_, y - overhang_, node.getHeight() + 2 * overhang_);
    return (h == 0 && v == 0) || isNearer(h, v);
  }

  // Far away the squares might not fit.
  bool isNearer(long h, long v) const {
    return h < limits::hit_radius && v < limits::hit_radius && h * h + v * v < best_;
  }

  /// Whether the point is in the text's box.
  bool examine(Node4C const& node, long x, long y) {
    bool const isHit = isInside(x_, x, node.getWidth()) && isInside(y_, y, node.getHeight());
    if (isHit && isInExponent(node, x - node.getDX(), y - node.getDY())) return false;
    long const h = distanceTo(x_, x, node.getWidth());
    long const v = distanceTo(y_, y, node.getHeight());
    if (isHit || isNearer(h, v)) {
      best_ = h * h + v * v;
      text = &node;
      left = x;
    }
    return isHit;
  }

  /// Whether the point is in the exponent above the end of a text in the row at (x, y).
  bool isInExponent(Node4C const& base, long x, long y) const {
    Node4C const* const power = exponentAbove(base);
    return power && isInside(x_, x + power->getDX(), power->getWidth() + 1) &&
           isInside(y_, y + power->getDY(), power->getHeight());
  }

  long x_;
  long y_;
  long overhang_;
  long best_ = limits::hit_radius * limits::hit_radius;
};

}  // namespace

PlaceS ViewZNT4C::findPlace(long x, long y) const {
  layoutIfPending();
  ViewHoldC const hold(*this);
  Node4C const& row = *root_->child(0);
  // Nothing is farther away, and differences fit 32 bits.
  constexpr long farthest = 1L << 30;
  x = std::clamp(x, -farthest, farthest);
  NearestTextC nearest(x, std::clamp(y, -farthest, farthest), row.measureReach());
  nearest.search(row);

  PlaceS caret = selection_.caret;
  long const left = nearest.text ? nearest.left : caret.node->getAbsolutePosition().x;
  if (nearest.text) caret.node = nearest.text;
  if (x < left) {
    caret.pos = 0;
  } else if (x >= left + caret.node->getWidth()) {
    caret = endOf(caret.node);
  } else {
    caret.node->selectFont(*graphics_);
    bool const composed = composition_.isIn(*caret.node);
    unsigned long const inserted = composed ? composition_.text.size() : 0;
    auto const width = [&](unsigned long count) {
      return measureShown(*caret.node, count, &composition_, *graphics_);
    };
    unsigned long pos = findBoundary(caret.node->sizeText() + inserted, x - left, width);
    if (composed && pos > composition_.place.pos) {
      pos = std::max<unsigned long>(pos - std::min(pos, inserted), composition_.place.pos);
    }
    caret.pos = static_cast<unsigned int>(pos);
  }
  return caret;
}

}  // namespace zolt::math::ved
