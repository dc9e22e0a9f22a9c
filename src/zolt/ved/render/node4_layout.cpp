#include "zolt/ved/operators/operator.h"
#include "zolt/ved/render/composition.h"
#include "zolt/ved/render/detail/row_layout.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// A construct may be lower than its content: an integral does not consider the height of its variable.
bool overflowsBox(Node4C const& construct) {
  for (unsigned long i = 0; i < construct.numChildren(); ++i) {
    Node4C const& row = *construct.child(i);
    if (row.getDY() < 0 || row.getDY() + row.getHeight() > construct.getHeight()) return true;
  }
  return false;
}

}  // namespace

/// What a layout needs in each node.
struct Node4C::LayoutPassS {
  enum WhatE { ALL, CHANGED };

  GraphicsABC const& graphics;
  WhatE what;
  CompositionS const* composition;  // null: none

  bool concerns(Node4C const& node) const { return what == ALL || node.needsLayout(); }
};

bool Node4C::layout(GraphicsABC const& graphics, CompositionS const* composition) {
  touch(STALE_REACH);
  return layoutNode({graphics, LayoutPassS::ALL, composition});
}

bool Node4C::layoutChanged(GraphicsABC const& graphics, CompositionS const* composition) {
  if (!needsLayout()) return true;
  touch(STALE_REACH);
  return layoutNode({graphics, LayoutPassS::CHANGED, composition});
}

// An unchanged node may have a different font depth than before, and an empty text may have become a slot, or
// ceased to be one, because its neighbours changed.
bool Node4C::needsLayout() const {
  if ((state_.stale & STALE_LAYOUT) || fontDepth_ != state_.laidOutDepth) return true;
  return isEmptyText() && isPlaceholder() != state_.laidOutAsSlot;
}

bool Node4C::layoutNode(LayoutPassS const& pass) {
  if (!parent_) fontDepth_ = 0;
  state_.stale |= STALE_REACH;
  // The stretches of a row that was edited and not normalised are meaningless.
  if (state_.stale & STALE_CHECK) dropIndex();
  if (state_.index) {
    if (pass.what == LayoutPassS::ALL || fontDepth_ != state_.laidOutDepth) state_.index->mark(STALE_LAYOUT);
    for (std::size_t k = 0; k < state_.index->size(); ++k) {
      std::size_t const first = (*state_.index)[k].first;
      auto const [from, end] = state_.index->findMarkedCells(k, STALE_LAYOUT);
      if ((*state_.index)[k].stale & STALE_LAYOUT) (*state_.index)[k].stale |= STALE_REACH;
      for (std::size_t i = first + from; i < first + end; ++i) {
        Node4C& item = *children_[i];
        item.fontDepth_ = fontDepth_;
        if (pass.concerns(item) && !item.layoutNode(pass)) return false;
      }
    }
  } else {
    for (Node4C* child : children_) child->fontDepth_ = fontDepth_;
    if (op_) {
      op_->beforeChildrenLayout(this, pass.graphics);
    } else if (type_ == NODE4_POWER) {
      child(0)->increaseFontDepth();
    }
    for (Node4C* child : children_) {
      if (pass.concerns(*child) && !child->layoutNode(pass)) return false;
    }
  }
  selectFont(pass.graphics);
  placeChildren(pass);
  // The mark is cleared last, so that a layout for which memory runs out is repeated.
  unmark(STALE_LAYOUT);
  state_.laidOutDepth = fontDepth_;
  return true;
}

/// Sets the size of a node whose children have theirs. (It is a function of its own so that the recursion
/// takes little stack.)
void Node4C::placeChildren(LayoutPassS const& pass) {
  GraphicsABC const& graphics = pass.graphics;
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
      break;
    case NODE4_OPERATOR:
      op_->layoutNode4(this, graphics);
      // The cells of a table are in its box.
      if (!state_.index && overflowsBox(*this)) noteOverflow();
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
      state_.laidOutAsSlot = type_ == NODE4_TEXT && isPlaceholder();
      graphics.getTextExtent(state_.laidOutAsSlot ? PLACEHOLDER_STR : text_, width, height, midHeight);
      state_.composed = pass.composition && pass.composition->isIn(*this);
      if (state_.composed) {
        width = measureShown(*this, text_.size() + pass.composition->text.size(), pass.composition, graphics);
      }
      setWidth(width);
      setHeight(height);
      setMidHeight(midHeight);
    }
  }
}

// The note is never taken back: its only cost is drawing what is out of sight.
void Node4C::noteOverflow() {
  for (Node4C* node = this; node && !node->state_.overflows; node = node->parent_) {
    node->state_.overflows = true;
  }
}

void Node4C::layout_standard(GraphicsABC const&) {}

}  // namespace zolt::math::ved
