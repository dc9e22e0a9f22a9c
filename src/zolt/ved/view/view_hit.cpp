#include <algorithm>

#include "zolt/ved/limits.h"
#include "zolt/ved/tree/tree_walk.h"
#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

namespace {

/// Measures the beginnings of one text, in the font that is current.
class PrefixMeasureC {
 public:
  PrefixMeasureC(wstring const& text, GraphicsABC const& graphics) : text_(text), graphics_(graphics) {}

  long width(unsigned long count) const { return graphics_.getTextWidth(text_.substr(0, count)); }

  /// The smallest count from `first` on whose width exceeds `limit`; one past the text when none does.
  unsigned long firstBeyond(long limit, unsigned long first) const {
    unsigned long last = text_.size() + 1;
    while (first < last) {
      unsigned long const middle = first + (last - first) / 2;
      if (width(middle) > limit) {
        last = middle;
      } else {
        first = middle + 1;
      }
    }
    return first;
  }

 private:
  wstring const& text_;
  GraphicsABC const& graphics_;
};

/// The boundary nearest to `x` (from the start of the text). Equally near ones give the later. Widths only
/// grow with the text, so a few measurements do.
unsigned long findBoundary(PrefixMeasureC const& measure, unsigned long size, long x) {
  unsigned long const beyond = measure.firstBeyond(x, 0);
  if (beyond == 0) return 0;
  unsigned long const before = beyond - 1;
  if (beyond > size) return before;
  long const width = measure.width(beyond);
  if (width - x > x - measure.width(before)) return before;
  return measure.firstBeyond(width, beyond) - 1;
}

/// How far a node's box reaches out of its parent's; negative when it stays inside.
long measureOverhang(Node4C const& node) {
  Node4C const& outer = *node.getParent();
  return std::max({-node.getDX(), -node.getDY(), node.getDX() + node.getWidth() - outer.getWidth(),
                   node.getDY() + node.getHeight() - outer.getHeight()});
}

/// How far the boxes of texts reach out of the boxes around them, at most. Rows leave out the gap after their
/// last item, for example, so that an empty text may stand just behind its row's box.
long measureTextOverhang(Node4C const& root) {
  long overhang = 0;  // of the node under way, out of the root's box
  long most = 0;
  auto const enter = [&](Node4C const& node) {
    if (&node == &root) return;
    overhang += measureOverhang(node);
    if (node.getType() == NODE4_TEXT || node.numChildren() > 0) most = std::max(most, overhang);
  };
  auto const leave = [&](Node4C const& node) {
    if (&node != &root) overhang -= measureOverhang(node);
  };
  walkTree(root, enter, leave);
  return most;
}

bool isInside(long at, long start, long length) { return start <= at && at < start + length; }

/// How far `at` lies outside of a stretch whose end is not part of it, yet at no distance.
long distanceTo(long at, long start, long length) {
  if (at < start) return start - at;
  return isInside(at, start, length) ? 0 : at - length - start;
}

}  // namespace

void ViewZNT4C::setSelection(long x, long y) {
  layoutIfPending();
  // Nothing is farther away, and differences fit 32 bits.
  constexpr long farthest = 1L << 30;
  hitX_ = x = std::clamp(x, -farthest, farthest);
  hitY_ = std::clamp(y, -farthest, farthest);
  hitBestDistance_ = limits::hit_radius * limits::hit_radius;
  PlaceS& caret = selection_.caret;
  hitLeft_ = caret.node->getAbsolutePosition().x;
  hitWidth_ = caret.node->getWidth();
  findSelectionNode(root_->child(0), 0, 0);

  if (x < hitLeft_) {
    caret.pos = 0;
  } else if (x >= hitLeft_ + hitWidth_) {
    caret = endOf(caret.node);
  } else {
    caret.node->selectFont(*graphics_);
    PrefixMeasureC const measure(caret.node->crefText(), *graphics_);
    caret.pos = static_cast<unsigned int>(findBoundary(measure, caret.node->sizeText(), x - hitLeft_));
  }
  needRedraw();
}

/// The first item of a row that starts at `x` that may be near enough. The items stand one behind the other.
unsigned long ViewZNT4C::findFirstInReach(Node4C const& row, long x) const {
  unsigned long first = 0;
  unsigned long last = row.numChildren() - 1;
  while (first < last) {
    unsigned long const middle = first + (last - first) / 2;
    Node4C const& item = *row.child(middle);
    if (x + item.getDX() + item.getWidth() + textOverhang_ + limits::hit_radius < hitX_) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return first;
}

/// The next child of a node at `x` from `next` on, unless that and all after it are out of reach.
Node4C* ViewZNT4C::findNextInReach(Node4C const& node, unsigned long& next, long x) const {
  bool const row = node.getType() == NODE4_LINE;
  if (row && next == 0) next = findFirstInReach(node, x);
  if (next == node.numChildren()) return nullptr;
  Node4C* const child = node.child(next++);
  return row && x + child->getDX() - textOverhang_ - limits::hit_radius > hitX_ ? nullptr : child;
}

// Tree order: the earliest of equally near texts wins.
bool ViewZNT4C::findSelectionNode(Node4C* node, long x, long y) {
  if (textOverhang_ < 0) textOverhang_ = measureTextOverhang(*root_);
  auto const enter = [&](Node4C& visited) {
    long const left = x + visited.getDX();
    long const top = y + visited.getDY();
    if (visited.getType() == NODE4_TEXT) return examineText(visited, left, top) ? WALK_STOP : WALK_PAST;
    if (visited.numChildren() == 0 || !isWorthVisiting(visited, left, top)) return WALK_PAST;
    x = left;
    y = top;
    return WALK_INTO;
  };
  auto const leave = [&](Node4C const& visited) {
    x -= visited.getDX();
    y -= visited.getDY();
  };
  return !walkTree(*node, enter, leave, [&](Node4C const& parent, unsigned long& next) {
    return findNextInReach(parent, next, x);
  });
}

/// Whether a text inside `node`, whose top-left corner is at (x, y), may contain the pointer or be nearer to
/// it than the best one so far.
bool ViewZNT4C::isWorthVisiting(Node4C const& node, long x, long y) const {
  long const grown = 2 * textOverhang_;
  long const h = distanceTo(hitX_, x - textOverhang_, node.getWidth() + grown);
  long const v = distanceTo(hitY_, y - textOverhang_, node.getHeight() + grown);
  if (h == 0 && v == 0) return true;
  return h < limits::hit_radius && v < limits::hit_radius && h * h + v * v < hitBestDistance_;
}

bool ViewZNT4C::examineText(Node4C const& node, long x, long y) {
  long const width = node.getWidth();
  long const height = node.getHeight();
  bool const hit = isInside(hitX_, x, width) && isInside(hitY_, y, height);
  if (!hit) {
    long const h = distanceTo(hitX_, x, width);
    long const v = distanceTo(hitY_, y, height);
    // Far away the squares might not fit.
    if (h >= limits::hit_radius || v >= limits::hit_radius) return false;
    hitDistance_ = h * h + v * v;
    if (hitDistance_ >= hitBestDistance_) return false;
    hitBestDistance_ = hitDistance_;
  }
  selection_.caret.node = &node;
  hitLeft_ = x;
  hitWidth_ = width;
  return hit;
}

}  // namespace zolt::math::ved
