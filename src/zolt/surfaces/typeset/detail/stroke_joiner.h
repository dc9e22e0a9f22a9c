#pragma once

#include <cstddef>
#include <vector>

#include "zolt/surfaces/typeset/path.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// Strokes that meet end to end, in drawing units.
struct ChainS {
  std::vector<PathPointS> points;  ///< at least two
  bool crisp = true;               ///< only horizontal and vertical strokes
};

/// Joins strokes whose ends meet into chains, whatever the order and direction they are drawn in.
class StrokeJoinerC {
 public:
  void add(PathPointS from, PathPointS to);
  bool isEmpty() const { return chains_.empty(); }
  std::vector<ChainS> const& getChains() const { return chains_; }
  void clear() { chains_.clear(); }

 private:
  bool attach(ChainS& chain, PathPointS from, PathPointS to);
  void mergeLast();

  std::vector<ChainS> chains_;
};

}  // namespace zolt::surfaces
