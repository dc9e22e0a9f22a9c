// Internal to render/: placing the items of a row.
#pragma once

#include <vector>

#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

/// Places the laid-out items of one row side by side on a common axis and sets the row's size. The row must
/// be normalised and its font selected.
///
/// `measure` takes the items of a stretch one by one; `join` puts the stretches side by side. A short row is
/// one stretch; of a long row only the stretches that are marked for layout are measured. Heights are
/// relative to the row's axis, whose position is known only after `join`.
class RowLayoutC {
 public:
  RowLayoutC(Node4C& row, GraphicsABC const& graphics);

  void layout();

 private:
  void measure(RowStretchS& stretch);
  void join();
  long closeGroup(Node4C& close, RowExtentS& extent);
  static void placePower(Node4C& power, long baseTop, RowExtentS& extent);
  void findPushes();
  void markAll();
  long findBaseTop(unsigned long power) const;
  long findIndexWidth(unsigned long power) const;
  bool isEmptyPair(RowStretchS const& stretch, unsigned long close) const;

  Node4C& row_;
  GraphicsABC const& graphics_;
  RowStretchesC stretches_;
  long const gap_;
  long const overhang_;
  std::vector<RowBracketS> levels_;  // the opening brackets whose partners have not been met
  std::vector<long> pushes_;         // one for each item; empty when all exponents have ordinary bases
  long highestGroup_ = 0;            // the least bottom of any group in brackets
  long rowTop_ = RowExtentS::none;   // none until it is known
  long width_ = 0;
  long axis_ = 0;
  long bottom_ = 0;
};

}  // namespace zolt::math::ved
