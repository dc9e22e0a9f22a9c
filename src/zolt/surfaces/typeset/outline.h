#pragma once

#include "zolt/surfaces/typeset/path.h"

namespace zolt::surfaces {

/// Outlines besides those of signs (`SignE`).
enum OutlineE : int {
  OUTLINE_OPENS_IN_ROW = -4,
  OUTLINE_CLOSES_IN_ROW = -3,
  OUTLINE_OPENS_AROUND_BOX = -2,
  OUTLINE_CLOSES_AROUND_BOX = -1
};

/// All that the outline of a sign or bracket depends on, wherever it is.
struct OutlineS {
  int shape;  ///< a `SignE` that is no pair of bars, or an `OutlineE`
  long width, height;
  double shift;  ///< how far an opening bracket moves right and an accent down; how far right a radical's bar
                 ///< begins
  unsigned long depth;  ///< of the font

  bool operator<(OutlineS const& other) const;
};

/// Appends the outline in a box with its top-left corner there.
void appendOutline(PathC& path, OutlineS const& outline, double x, double y);

}  // namespace zolt::surfaces
