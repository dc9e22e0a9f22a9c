#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class GraphicsABC;
class Node4C;
}  // namespace zolt::math::ved

namespace zolt::catalogue_extended::detail {

using math::ved::GraphicsABC;
using math::ved::Node4C;

/// Some rows of a construct, from number `first` to before `last`, side by side on one axis with a comma
/// between two of them.
class RowLineC {
 public:
  RowLineC(Node4C& construct, unsigned long first, unsigned long last);

  /// Gives the rows their horizontal places, from `left` on. The font of the construct is current before and
  /// after; the commas have that of the rows.
  void placeFrom(long left, GraphicsABC const& graphics);
  long getRight() const { return right_; }
  /// The extent above and below the common axis.
  long getAbove() const { return above_; }
  long getBelow() const { return below_; }
  /// Gives the rows their vertical places.
  void alignAt(long axis);

  /// Draws the commas between such rows; (x, y) is the construct's corner.
  static void drawCommas(Node4C const& construct, unsigned long first, unsigned long last,
                         GraphicsABC const& graphics, long x, long y);

 private:
  Node4C& construct_;
  unsigned long first_;
  unsigned long last_;
  long right_ = 0;
  long above_ = 0;
  long below_ = 0;
};

}  // namespace zolt::catalogue_extended::detail
