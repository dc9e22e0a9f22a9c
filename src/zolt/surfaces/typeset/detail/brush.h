#pragma once

#include <cstddef>
#include <vector>

#include "zolt/surfaces/typeset/path.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// A position of a pen whose thickness changes on the way.
struct BrushPointS {
  double x, y;
  double radius;
};

/// A pen stroke along a line: the line is collected piece by piece, then its smooth outline, with round ends,
/// is added to a path. Outlines of several strokes may overlap in one path; they are filled as their union.
class BrushC {
 public:
  void moveTo(BrushPointS p);
  /// Adds a straight piece; the thickness changes evenly.
  void lineTo(BrushPointS p);
  /// Adds a cubic with the controls `c1`, `c2`; the thickness changes gently at both ends.
  void curveTo(PathPointS c1, PathPointS c2, BrushPointS p);

  /// Appends the outline and forgets the line.
  void finish(PathC& path);

 private:
  std::vector<BrushPointS> points_;
};

/// Appends a disc.
void appendDisc(PathC& path, double x, double y, double radius);

/// Appends a rectangle with round corners.
void appendRoundedBox(PathC& path, double x, double y, double width, double height, double radius);

}  // namespace zolt::surfaces
