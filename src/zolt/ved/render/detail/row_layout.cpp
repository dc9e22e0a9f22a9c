#include "zolt/ved/render/detail/row_layout.h"

#include <algorithm>

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

namespace {

/// Whether it is a text that shows no characters.
bool showsNothing(Node4C const& item) { return item.isEmptyText() && !item.crefState().composed; }

/// Whether an exponent after this item is placed on the item before it.
bool isPassedOver(Node4C const& item) { return showsNothing(item) && !item.crefState().laidOutAsSlot; }

/// How far an exponent overlaps its base, in units.
constexpr long exponent_overlap = 5;
/// How much higher it is above an index.
constexpr long index_clearance = 1;
/// The space between the brackets of an empty pair, in units.
constexpr long empty_pair_gap = 2;

long pushOf(Node4C const& power) { return power.getHeight() - exponent_overlap; }

}  // namespace

RowLayoutC::RowLayoutC(Node4C& row, GraphicsABC const& graphics)
    : row_(row),
      graphics_(graphics),
      stretches_(row.crefState().index.get(), row.numChildren()),
      gap_(graphics.getMetric(0)),
      overhang_(graphics.getMetric(2)) {}

void RowLayoutC::layout() {
  join();
  if (axis_ + highestGroup_ < 0 || !pushes_.empty()) {
    // A group extends at least down to the row's top, even if its items end above. They do so only on
    // surfaces with negative sizes and in rows that were not normalised.
    rowTop_ = -axis_;
    markAll();
    join();
    markAll();
  }
  for (std::size_t k = 0; k < stretches_.size(); ++k) stretches_[k].dy = static_cast<std::int32_t>(axis_);
  if (!row_.crefState().index) {
    for (unsigned long i = 0; i < row_.numChildren(); ++i)
      row_.child(i)->setDY(row_.child(i)->getDY() + axis_);
  }
  row_.setWidth(width_ - gap_);
  row_.setMidHeight(axis_);
  row_.setHeight(std::max(0L, axis_ + bottom_));
}

void RowLayoutC::measure(RowStretchS& stretch) {
  RowSumS& sum = stretch.sum;
  sum.brackets.clear();
  highestGroup_ = -RowExtentS::none;
  RowExtentS extent;
  long base = RowExtentS::none;  // how low the axis must be for the item that an exponent would be on now
  bool onBracket = false;        // whether that item is a closing bracket with a partner in another stretch
  auto const endBase = [&] {
    extent.require(base);
    base = RowExtentS::none;
    onBracket = false;
  };
  std::size_t const outside = levels_.size();
  stretch.dx = 0;
  long x = 0;
  for (unsigned long i = stretch.first; i < stretch.first + stretch.count; ++i) {
    Node4C& item = *row_.child(i);
    item.setDX(x);
    x += item.getWidth();
    switch (item.getType()) {
      case NODE4_POWER: {
        long const index = findIndexWidth(i), clearance = index > 0 ? index_clearance : 0;
        item.setDX(item.getDX() - index);
        x += gap_ - std::min(index, item.getWidth());
        if (i > 0 && pushes_.empty() && isOpeningBracket(row_.child(i - 1)->getType())) {
          findPushes();
          levels_.resize(outside);
          return measure(stretch);
        }
        if (pushes_.empty()) base += pushOf(item) + clearance;
        if (onBracket) {
          sum.brackets.back().power = &item;
        } else {
          placePower(item, findBaseTop(i) - clearance, extent);
        }
        break;
      }
      case NODE4_OPEN:
      case NODE4_AUTO_OPEN:
        endBase();
        levels_.push_back({extent, &item, nullptr});
        extent = {};
        break;
      case NODE4_CLOSE:
      case NODE4_AUTO_CLOSE:
        if (isEmptyPair(stretch, i)) {
          item.setDX(x - item.getWidth() + empty_pair_gap);
          x += empty_pair_gap;
        }
        endBase();
        if (levels_.size() > outside) {
          base = closeGroup(item, extent);
        } else {
          sum.brackets.push_back({extent, &item, nullptr});
          extent = {};
          onBracket = true;
        }
        break;
      default:
        if (!isPassedOver(item)) endBase();
        if (!showsNothing(item)) x += gap_;
        item.setDY(-item.getMidHeight());
        extent.include(item.getDY(), item.getDY() + item.getHeight());
        Node4C::max1stDim(base, item.getMidHeight() + (pushes_.empty() ? 0 : pushes_[i]));
    }
  }
  endBase();
  auto const opened = levels_.begin() + static_cast<std::ptrdiff_t>(outside);
  sum.brackets.insert(sum.brackets.end(), opened, levels_.end());
  levels_.erase(opened, levels_.end());
  sum.width = x;
  sum.extent = extent;
  sum.highestGroup = highestGroup_;
}

void RowLayoutC::markAll() {
  for (std::size_t k = 0; k < stretches_.size(); ++k) stretches_[k].stale |= STALE_LAYOUT | STALE_REACH;
}

/// An exponent pushes down the item or the group on which it is placed. An exponent directly after an opening
/// bracket, which normalisation does not leave there, pushes down items on several levels; for such rows the
/// exponents are taken one by one here.
void RowLayoutC::findPushes() {
  pushes_.assign(row_.numChildren(), 0);
  for (unsigned long power = 0; power < row_.numChildren(); ++power) {
    if (row_.child(power)->getType() != NODE4_POWER) continue;
    long depth = 0;
    bool isBase = true;
    for (unsigned long i = power; isBase && i-- > 0;) {
      Node4C const& item = *row_.child(i);
      pushes_[i] += pushOf(*row_.child(power));
      if (isClosingBracket(item.getType())) {
        ++depth;
      } else if (isOpeningBracket(item.getType())) {
        isBase = --depth != 0;
      } else if (item.getType() != NODE4_POWER && !isPassedOver(item)) {
        isBase = depth != 0;
      }
    }
  }
}

bool RowLayoutC::isEmptyPair(RowStretchS const& stretch, unsigned long close) const {
  return close >= stretch.first + 2 && showsNothing(*row_.child(close - 1)) &&
         isOpeningBracket(row_.child(close - 2)->getType());
}

long RowLayoutC::findBaseTop(unsigned long power) const {
  if (power == 0) return -graphics_.getTextMidHeight(wstring());
  Node4C const& before = *row_.child(power - 1);
  if (isOpeningBracket(before.getType())) {
    return rowTop_ + static_cast<long>(levels_.size() - 1) * overhang_ + pushes_[power - 1];
  }
  return (power > 1 && isPassedOver(before) ? *row_.child(power - 2) : before).getDY();
}

/// The width of the index that the exponent's base ends with.
long RowLayoutC::findIndexWidth(unsigned long power) const {
  if (power == 0) return 0;
  bool const isOver = power > 1 && isPassedOver(*row_.child(power - 1));
  Node4C const& base = *row_.child(power - (isOver ? 2 : 1));
  if (base.getType() == NODE4_OPERATOR) return base.crefOperator()->getIndexWidth(base);
  bool const isText = base.getType() == NODE4_TEXT && !base.crefState().composed;
  return isText && !base.isEmptyText() ? graphics_.getIndexWidth(base.crefText()) : 0;
}

void RowLayoutC::placePower(Node4C& power, long baseTop, RowExtentS& extent) {
  power.setDY(baseTop - power.getHeight() + exponent_overlap);
  Node4C::min1stDim(extent.top, power.getDY());
}

/// Sizes the brackets around a group. `extent` is the group's and becomes that of the level around it,
/// including the group. Returns how low the axis must be for the group.
long RowLayoutC::closeGroup(Node4C& close, RowExtentS& extent) {
  RowExtentS const group = extent;
  Node4C& open = *levels_.back().bracket;
  extent = levels_.back().before;
  levels_.pop_back();
  Node4C::min1stDim(highestGroup_, group.bottom);
  long const top = group.top - overhang_;
  long const bottom = std::max(group.bottom, rowTop_) + overhang_;
  for (Node4C* bracket : {&open, &close}) {
    bracket->setDY(top);
    bracket->setHeight(bottom - top);
    bracket->setMidHeight(-top);
  }
  extent.include(top, bottom);
  return overhang_ + group.axis;
}

/// Brackets with a partner in their stretch are done already; this pairs the others.
void RowLayoutC::join() {
  RowExtentS extent;
  highestGroup_ = -RowExtentS::none;
  width_ = 0;
  for (std::size_t k = 0; k < stretches_.size(); ++k) {
    RowStretchS& stretch = stretches_[k];
    RowSumS const& sum = stretch.sum;
    stretch.dy = 0;
    if (stretch.stale & STALE_LAYOUT) {
      long const highest = highestGroup_;
      measure(stretch);
      highestGroup_ = highest;
      stretch.stale &= static_cast<std::uint8_t>(~STALE_LAYOUT);
    }
    stretch.dx = static_cast<std::int32_t>(width_);
    width_ += sum.width;
    Node4C::min1stDim(highestGroup_, sum.highestGroup);
    for (RowBracketS const& item : sum.brackets) {
      extent.include(item.before);
      if (isOpeningBracket(item.bracket->getType())) {
        levels_.push_back({extent, item.bracket, nullptr});
        extent = {};
      } else if (!levels_.empty()) {
        long const axis = closeGroup(*item.bracket, extent);
        extent.require(axis + (item.power ? pushOf(*item.power) : 0));
        if (!item.power) continue;
        long const before = item.power->getDY();
        placePower(*item.power, item.bracket->getDY(), extent);
        if (item.power->getDY() != before) stretch.stale |= STALE_REACH;
      }
    }
    extent.include(sum.extent);
  }
  levels_.clear();
  axis_ = std::max(0L, extent.axis);
  bottom_ = extent.bottom;
}

}  // namespace zolt::math::ved
