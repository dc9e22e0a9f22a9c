// Internal to render/: placing the items of a long row.
#pragma once

#include <vector>

#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

/// Does for a normal row with an index what `RowLayoutC` does for any row, with the same result, but looks
/// only at the items of stretches that changed and at the sums of the others. Everything vertical is reckoned
/// from the row's axis, which is known last. Brackets with a partner in the same stretch are done with it;
/// the others are matched when the stretches are put one behind the other.
class LongRowLayoutC {
 public:
  LongRowLayoutC(Node4C& row, RowIndexC& index, GraphicsABC const& graphics);

  /// False, with places that mean nothing, for a row that it cannot do.
  bool layout();

 private:
  void measure(RowStretchS& stretch);
  bool join();
  long placePower(Node4C& power, long baseTop) const;
  long closeGroup(Node4C& open, Node4C& close, Node4C const* power, RowExtentS const& group,
                  RowExtentS& outer) const;

  Node4C& row_;
  RowIndexC& index_;
  long const gap_;
  long const overhang_;
  std::vector<RowBracketS>& levels_;  // opening brackets that are not closed yet
};

}  // namespace zolt::math::ved
