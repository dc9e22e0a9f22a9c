// Internal to render/: placing the items of a row.
#pragma once

#include <vector>

#include "zolt/ved/geometry/graphics.h"

namespace zolt::math::ved {

class Node4C;

/// Places the laid-out items of one row beside one another on a common axis and sets the row's size, in two
/// passes that are linear in the number of items. The row's font is current. Brackets must balance, as
/// normalisation leaves them.
class RowLayoutC {
 public:
  /// How far an exponent reaches down over its base.
  static constexpr long exponent_overlap = 5;
  /// What stands between the brackets of an empty pair.
  static constexpr long empty_pair_gap = 2;

  RowLayoutC(Node4C& row, GraphicsABC const& graphics);

  void layout();

 private:
  static constexpr unsigned long none = static_cast<unsigned long>(-1);

  struct LevelS {
    unsigned long open;  // index of the bracket that opened the level
    long top;            // smallest dy in it
    long bottom;         // largest dy + height in it

    void include(long itemTop, long itemBottom) {
      if (itemTop < top) top = itemTop;
      if (itemBottom > bottom) bottom = itemBottom;
    }
  };

  void placeHorizontally();
  void prepareExponents();
  unsigned long findBase(unsigned long power) const;
  void pushBaseDown(unsigned long power);
  void findAxis();
  void alignVertically();
  long findBaseTop(unsigned long power) const;
  void closeLevel(Node4C& close);

  bool isPassedOver(unsigned long i) const;

  Node4C& row_;
  GraphicsABC const& graphics_;
  unsigned long const count_;
  long const gap_;
  long const overhang_;
  std::vector<LevelS> levels_;
  std::vector<unsigned long> opens_;
  // Only in a row with exponents. A base can be a long bracketed group, and groups nest, so pushing bases
  // down item by item could cost a square; the pushes are collected as differences between neighbours
  // instead.
  std::vector<unsigned long> baseStart_;  // of an exponent or ")": where its base or group starts
  std::vector<long> pushSteps_;
};

}  // namespace zolt::math::ved
