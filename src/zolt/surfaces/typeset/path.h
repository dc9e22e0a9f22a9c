#pragma once

#include <vector>

namespace zolt::surfaces {

/// A point in surface units.
struct PathPointS {
  double x = 0, y = 0;
};

enum PathVerbE { PATH_MOVE = 0, PATH_LINE = 1, PATH_CURVE = 2, PATH_CLOSE = 3 };

/// One step of a path: `points[0]` is the target of a move or a line; a curve is a cubic with the controls
/// `points[0]`, `points[1]` and the target `points[2]`.
struct PathStepS {
  PathVerbE verb;
  PathPointS points[3];

  int countPoints() const { return verb == PATH_CURVE ? 3 : verb == PATH_CLOSE ? 0 : 1; }
};

/// An outline or a line in surface units, drawn by a surface with whatever its toolkit has. Outlines are
/// filled by the nonzero winding rule.
class PathC {
 public:
  void append(PathStepS const& step) { steps_.push_back(step); }
  void moveTo(PathPointS p) { steps_.push_back({PATH_MOVE, {p, {}, {}}}); }
  void lineTo(PathPointS p) { steps_.push_back({PATH_LINE, {p, {}, {}}}); }
  void curveTo(PathPointS c1, PathPointS c2, PathPointS p) { steps_.push_back({PATH_CURVE, {c1, c2, p}}); }
  void close() { steps_.push_back({PATH_CLOSE, {}}); }
  void clear() { steps_.clear(); }

  std::vector<PathStepS> const& getSteps() const { return steps_; }

 private:
  std::vector<PathStepS> steps_;
};

}  // namespace zolt::surfaces
