#include "zolt/ved/render/detail/long_row_layout.h"

#include <algorithm>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/render/detail/row_layout.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

LongRowLayoutC::LongRowLayoutC(Node4C& row, RowIndexC& index, GraphicsABC const& graphics)
    : row_(row),
      index_(index),
      gap_(graphics.getMetric(0)),
      overhang_(graphics.getMetric(2)),
      levels_(index.refOpenBrackets()) {
  levels_.clear();
}

bool LongRowLayoutC::layout() {
  for (std::size_t k = 0; k < index_.size(); ++k) {
    RowStretchS& stretch = index_[k];
    if (stretch.stale & Node4C::STALE_CHECK) return false;
    if (!(stretch.stale & Node4C::STALE_LAYOUT)) continue;
    measure(stretch);
    stretch.stale &= static_cast<std::uint8_t>(~Node4C::STALE_LAYOUT);
  }
  return join();
}

void LongRowLayoutC::measure(RowStretchS& stretch) {
  auto const itemAt = [&](std::uint32_t i) { return row_.children_[stretch.first + i]; };
  std::uint32_t const count = stretch.count;
  // The exponent of the item or group that ends before text i, which is passed over then.
  auto const powerBehind = [&](std::uint32_t i) -> Node4C* {
    if (i + 1 >= count || itemAt(i + 1)->type_ != NODE4_POWER) return nullptr;
    return itemAt(i)->text_.empty() && !itemAt(i)->laidOutAsSlot_ ? itemAt(i + 1) : nullptr;
  };
  auto const pushOf = [](Node4C const* power) {
    return power ? power->getHeight() - RowLayoutC::exponent_overlap : 0;
  };
  RowExtentS extent;
  long x = 0;
  stretch.brackets.clear();
  for (std::uint32_t i = 0; i < count; i += 2) {
    Node4C& text = *itemAt(i);
    Node4C* const item = i + 1 < count ? itemAt(i + 1) : nullptr;
    bool const isBase = item && item->type_ == NODE4_POWER;
    text.dx_ = static_cast<std::int32_t>(x);
    text.dy_ = -text.midHeight_;
    x += text.width_ + (text.text_.empty() ? 0 : gap_);
    extent.require(text.midHeight_ + (isBase ? pushOf(item) : 0));
    extent.include(text.dy_, text.dy_ + text.height_);
    if (!item) break;

    item->dx_ = static_cast<std::int32_t>(x);
    x += item->width_;
    switch (item->type_) {
      case NODE4_OPERATOR:
        x += gap_;
        item->dy_ = -item->midHeight_;
        extent.require(item->midHeight_ + pushOf(powerBehind(i + 2)));
        extent.include(item->dy_, item->dy_ + item->height_);
        break;
      case NODE4_POWER: {
        x += gap_;
        Node4C const& base = powerBehind(i) && i > 0 ? *itemAt(i - 1) : text;
        bool const later = isClosingBracket(base.type_) && !stretch.brackets.empty() &&
                           stretch.brackets.back().power == item;
        if (!later) Node4C::min1stDim(extent.top, placePower(*item, base.dy_));
        break;
      }
      case NODE4_OPEN:
      case NODE4_AUTO_OPEN:
        levels_.push_back({extent, item, nullptr});
        extent = {};
        break;
      default: {
        if (i > 0 && text.text_.empty() && isOpeningBracket(itemAt(i - 1)->type_)) {
          item->dx_ += RowLayoutC::empty_pair_gap;
          x += RowLayoutC::empty_pair_gap;
        }
        Node4C* const power = powerBehind(i + 2);
        if (levels_.empty()) {
          stretch.brackets.push_back({extent, item, power});
          extent = {};
        } else {
          RowExtentS const group = extent;
          extent = levels_.back().before;
          closeGroup(*levels_.back().bracket, *item, power, group, extent);
          levels_.pop_back();
        }
      }
    }
  }
  stretch.brackets.insert(stretch.brackets.end(), levels_.begin(), levels_.end());
  levels_.clear();
  stretch.extent = extent;
  stretch.width = x;
}

/// Places an exponent above the top of its base; answers its own top.
long LongRowLayoutC::placePower(Node4C& power, long baseTop) const {
  power.dy_ = static_cast<std::int32_t>(baseTop - power.height_ + RowLayoutC::exponent_overlap);
  return power.dy_;
}

/// Sizes the brackets around a group and adds it to what stands around it; answers the top of the brackets.
long LongRowLayoutC::closeGroup(Node4C& open, Node4C& close, Node4C const* power, RowExtentS const& group,
                                RowExtentS& outer) const {
  long const top = group.top - overhang_;
  long const height = group.bottom - top + overhang_;
  for (Node4C* bracket : {&open, &close}) {
    bracket->dy_ = static_cast<std::int32_t>(top);
    bracket->setHeight(height);
    bracket->setMidHeight(-top);
  }
  long const push = power ? power->getHeight() - RowLayoutC::exponent_overlap : 0;
  outer.require(overhang_ + group.axis + push);
  outer.include(top, top + height);
  if (group.highest < outer.highest) outer.highest = group.highest;
  return top;
}

bool LongRowLayoutC::join() {
  RowExtentS extent;
  long x = 0;
  for (std::size_t k = 0; k < index_.size(); ++k) {
    RowStretchS& stretch = index_[k];
    stretch.dx = static_cast<std::int32_t>(x);
    x += stretch.width;
    for (RowBracketS const& bracket : stretch.brackets) {
      extent.include(bracket.before);
      if (isOpeningBracket(bracket.bracket->type_)) {
        levels_.push_back({extent, bracket.bracket, nullptr});
        extent = {};
        continue;
      }
      if (levels_.empty()) return false;
      RowExtentS const group = extent;
      extent = levels_.back().before;
      long const top = closeGroup(*levels_.back().bracket, *bracket.bracket, bracket.power, group, extent);
      levels_.pop_back();
      if (bracket.power) Node4C::min1stDim(extent.top, placePower(*bracket.power, top));
    }
    extent.include(stretch.extent);
  }
  long const axis = std::max(0L, extent.axis);
  // What ends above the row's top would count differently in rows that are laid out item by item.
  if (!levels_.empty() || axis + extent.highest < 0) return false;
  for (std::size_t k = 0; k < index_.size(); ++k) index_[k].dy = static_cast<std::int32_t>(axis);
  row_.setWidth(x - gap_);
  row_.setMidHeight(axis);
  row_.setHeight(std::max(0L, axis + extent.bottom));
  return true;
}

}  // namespace zolt::math::ved
