#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::plot {

enum TickUnitE {
  TICKS_OF_ONE,
  TICKS_OF_PI  ///< π/2, π, 3π/2: for angles in radians
};

/// Where an axis has a tick, and what is written at it.
struct TickS {
  double value = 0;
  oss::wstring label;
};

/// Where an axis between two values has its ticks, not more than `most` of them: at multiples of 1, 2 or 5
/// times a power of ten, or of π or a simple part of it. Labels have the digits that tell the ticks apart, a
/// minus U+2212, and powers of ten as 2·10⁶. Empty when there is nothing between the values.
std::vector<TickS> makeTicks(double from, double to, unsigned most, TickUnitE unit = TICKS_OF_ONE);

/// A value to be read from a graph whose pixels are `step` apart: with the digits that such a step tells
/// apart.
oss::wstring writeValue(double value, double step);

}  // namespace zolt::plot
