#pragma once

namespace zolt::math::ved {

/// A position in surface units; x grows right, y grows down.
struct PointS {
  PointS(long atX = 0, long atY = 0) : x(atX), y(atY) {}

  PointS& operator+=(PointS offset) { return *this = {x + offset.x, y + offset.y}; }
  PointS& operator-=(PointS offset) { return *this = {x - offset.x, y - offset.y}; }

  long x;
  long y;
};

}  // namespace zolt::math::ved
