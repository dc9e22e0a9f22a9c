#pragma once

namespace zolt::math::ved {

/// A box in surface units. `right` and `bottom` lie one unit past the box.
struct RectangleS {
  RectangleS(long leftEdge = 0, long topEdge = 0, long rightEdge = 0, long bottomEdge = 0)
      : left(leftEdge), top(topEdge), right(rightEdge), bottom(bottomEdge) {}

  /// Whether this is the all-zero rectangle, which means "nothing to show". A rectangle that is merely empty
  /// (left equal to right, but not all zero) is not null.
  bool isNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }

  long left;
  long top;
  long right;
  long bottom;
};

}  // namespace zolt::math::ved
