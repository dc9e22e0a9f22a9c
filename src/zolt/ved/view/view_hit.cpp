#include <algorithm>
#include <vector>

#include "zolt/ved/limits.h"
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

/// How far the boxes of texts reach out of the boxes around them, at most. Rows leave out the gap after their
/// last item, for example, so that an empty text may stand just behind its row's box.
long measureTextOverhang(Node4C const& root) {
  std::vector<long> overhangs{0};  // of the nodes on the way down, from the children seen so far
  Node4C const* node = &root;
  unsigned long next = 0;
  for (;;) {
    if (next < node->numChildren()) {
      node = node->child(next);
      overhangs.push_back(0);
      next = 0;
      continue;
    }
    if (node == &root) return overhangs.front();
    long const inner = overhangs.back();
    overhangs.pop_back();
    Node4C const& outer = *node->getParent();
    if (node->numChildren() > 0 || node->getType() == NODE4_TEXT) {
      long const own =
          std::max({-node->getDX(), -node->getDY(), node->getDX() + node->getWidth() - outer.getWidth(),
                    node->getDY() + node->getHeight() - outer.getHeight()});
      overhangs.back() = std::max(overhangs.back(), own + inner);
    }
    next = node->findChildNumber() + 1;
    node = &outer;
  }
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
  hitX_ = x;
  hitY_ = y;
  hitBestDistance_ = limits::hit_radius * limits::hit_radius;
  PointS const position = caretNode_->getAbsolutePosition();
  hitLeft_ = position.x;
  hitWidth_ = caretNode_->getWidth();
  findSelectionNode(root_->child(0), 0, 0);

  if (x < hitLeft_) {
    caretPos_ = 0;
  } else if (x >= hitLeft_ + hitWidth_) {
    caretPos_ = static_cast<unsigned int>(caretNode_->sizeText());
  } else {
    caretNode_->selectFont(*graphics_);
    PrefixMeasureC const measure(caretNode_->crefText(), *graphics_);
    caretPos_ = static_cast<unsigned int>(findBoundary(measure, caretNode_->sizeText(), x - hitLeft_));
  }
  needRedraw();
}

// Walks in tree order, so that the earliest of equally near texts wins.
bool ViewZNT4C::findSelectionNode(Node4C* node, long x, long y) {
  if (textOverhang_ < 0) textOverhang_ = measureTextOverhang(*root_);
  Node4C const* const top = node;
  for (;;) {
    if (node->numChildren() > 0 && isWorthVisiting(*node, x + node->getDX(), y + node->getDY())) {
      x += node->getDX();
      y += node->getDY();
      node = node->child(0);
      continue;
    }
    if (node->getType() == NODE4_TEXT && examineText(node, x + node->getDX(), y + node->getDY())) return true;
    Node4C* next = nullptr;
    while (node != top && !(next = node->goRight())) {
      node = node->getParent();
      x -= node->getDX();
      y -= node->getDY();
    }
    if (node == top) return false;
    node = next;
  }
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

bool ViewZNT4C::examineText(Node4C* node, long x, long y) {
  long const width = node->getWidth();
  long const height = node->getHeight();
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
  caretNode_ = node;
  hitLeft_ = x;
  hitWidth_ = width;
  return hit;
}

}  // namespace zolt::math::ved
