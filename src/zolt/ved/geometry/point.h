#pragma once

namespace zolt::math::ved {

/// A position in surface units; x grows right, y grows down.
struct PointS {
  PointS(long x = 0, long y = 0) : x(x), y(y) {}

  long x;
  long y;
};

}  // namespace zolt::math::ved
