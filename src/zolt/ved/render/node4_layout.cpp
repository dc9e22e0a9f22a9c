#include "zolt/ved/operators/operator.h"
#include "zolt/ved/render/detail/long_row_layout.h"
#include "zolt/ved/render/detail/row_layout.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// A construct may be lower than what is in it: an integral does not ask how high its variable is.
bool overflowsBox(Node4C const& construct) {
  for (unsigned long i = 0; i < construct.numChildren(); ++i) {
    Node4C const& row = *construct.child(i);
    if (row.getDY() < 0 || row.getDY() + row.getHeight() > construct.getHeight()) return true;
  }
  return false;
}

}  // namespace

bool Node4C::layout(GraphicsABC const& graphics) { return layoutNode(graphics, true); }

bool Node4C::layoutChanged(GraphicsABC const& graphics) {
  return !needsLayout() || layoutNode(graphics, false);
}

// An unchanged node may stand at another font depth than before, and an empty text may have become a slot, or
// ceased to be one, because of what stands beside it now.
bool Node4C::needsLayout() const {
  if ((stale_ & STALE_LAYOUT) || fontDepth_ != laidOutDepth_) return true;
  return isEmptyText() && isPlaceholder() != laidOutAsSlot_;
}

bool Node4C::layoutNode(GraphicsABC const& graphics, bool all) {
  if (!parent_) fontDepth_ = 0;
  if (index_ && !all) return layoutLongRow(graphics);
  for (Node4C* child : children_) child->fontDepth_ = fontDepth_;
  if (op_) {
    op_->beforeChildrenLayout(this, graphics);
  } else if (type_ == NODE4_POWER) {
    child(0)->increaseFontDepth();
  }
  for (Node4C* child : children_) {
    if ((all || child->needsLayout()) && !child->layoutNode(graphics, all)) return false;
  }
  selectFont(graphics);
  switch (type_) {
    case NODE4_ROOT:
      dx_ = dy_ = 0;
      [[fallthrough]];
    case NODE4_POWER:
      width_ = child(0)->width_;
      height_ = child(0)->height_;
      midHeight_ = child(0)->midHeight_;
      child(0)->dx_ = child(0)->dy_ = 0;
      break;
    case NODE4_LINE:
      RowLayoutC(*this, graphics).layout();
      if (index_) index_->mark(STALE_LAYOUT);
      break;
    case NODE4_OPERATOR:
      op_->layoutNode4(this, graphics);
      if (overflowsBox(*this)) noteOverflow();
      break;
    case NODE4_OPEN:
    case NODE4_CLOSE:
    case NODE4_AUTO_OPEN:
    case NODE4_AUTO_CLOSE:
      setWidth(graphics.getMetric(1));
      break;
    default: {
      long width = 0;
      long height = 0;
      long midHeight = 0;
      laidOutAsSlot_ = type_ == NODE4_TEXT && isPlaceholder();
      graphics.getTextExtent(laidOutAsSlot_ ? PLACEHOLDER_STR : text_, width, height, midHeight);
      setWidth(width);
      setHeight(height);
      setMidHeight(midHeight);
    }
  }
  // Last, so that a layout for which memory runs out is begun anew.
  unmark(STALE_LAYOUT);
  laidOutDepth_ = fontDepth_;
  return true;
}

// Nobody takes the note back: it costs no more than drawing what is out of sight.
void Node4C::noteOverflow() {
  for (Node4C* node = this; node && !node->overflows_; node = node->parent_) node->overflows_ = true;
}

bool Node4C::layoutLongRow(GraphicsABC const& graphics) {
  if (fontDepth_ != laidOutDepth_) index_->mark(STALE_LAYOUT);
  for (std::size_t k = 0; k < index_->size(); ++k) {
    RowStretchS const& stretch = (*index_)[k];
    if (!(stretch.stale & STALE_LAYOUT)) continue;
    for (std::uint32_t i = stretch.first; i < stretch.first + stretch.count; ++i) {
      Node4C& item = *children_[i];
      item.fontDepth_ = fontDepth_;
      if (item.needsLayout() && !item.layoutNode(graphics, false)) return false;
    }
  }
  selectFont(graphics);
  if (!LongRowLayoutC(*this, *index_, graphics).layout()) {
    RowLayoutC(*this, graphics).layout();
    index_->mark(STALE_LAYOUT);
  }
  unmark(STALE_LAYOUT);
  laidOutDepth_ = fontDepth_;
  return true;
}

void Node4C::layout_standard(GraphicsABC const&) {}

}  // namespace zolt::math::ved
