#include "tests/formula/reference_row_layout.h"

#include <algorithm>
#include <vector>

namespace zolt::tests {

using namespace math::ved;

namespace {

struct BoxS {
  long dx = 0;
  long dy = 0;
  long width = 0;
  long height = 0;
  long midHeight = 0;
};

std::string describe(BoxS const& box) {
  std::string text;
  for (long value : {box.dx, box.dy, box.width, box.height, box.midHeight})
    text += " " + std::to_string(value);
  return text;
}

BoxS boxOf(Node4C const& node) {
  return {node.getDX(), node.getDY(), node.getWidth(), node.getHeight(), node.getMidHeight()};
}

class RowC {
 public:
  RowC(Node4C const& row, GraphicsABC const& graphics)
      : row_(row),
        graphics_(graphics),
        count_(row.numChildren()),
        gap_(graphics.getMetric(0)),
        overhang_(graphics.getMetric(2)),
        boxes_(count_) {}

  std::string findDifference() {
    for (unsigned long i = 0; i < count_; ++i) {
      boxes_[i].width = row_.child(i)->getWidth();
      if (!isOpen(i) && !isClose(i)) {
        boxes_[i].height = row_.child(i)->getHeight();
        boxes_[i].midHeight = row_.child(i)->getMidHeight();
      }
    }
    placeHorizontally();
    alignVertically();
    for (unsigned long i = 0; i < count_; ++i) {
      std::string const expected = describe(boxes_[i]);
      std::string const found = describe(boxOf(*row_.child(i)));
      if (expected != found) return "item " + std::to_string(i) + expected + " is" + found;
    }
    own_.dx = row_.getDX();
    own_.dy = row_.getDY();
    if (describe(own_) != describe(boxOf(row_)))
      return "row" + describe(own_) + " is" + describe(boxOf(row_));
    return std::string();
  }

 private:
  bool is(unsigned long i, Node4TypeE type) const { return row_.child(i)->getType() == type; }
  bool isOpen(unsigned long i) const { return is(i, NODE4_OPEN) || is(i, NODE4_AUTO_OPEN); }
  bool isClose(unsigned long i) const { return is(i, NODE4_CLOSE) || is(i, NODE4_AUTO_CLOSE); }
  bool isEmptyText(unsigned long i) const { return is(i, NODE4_TEXT) && row_.child(i)->sizeText() == 0; }

  bool isPlaceholder(unsigned long i) const {
    if (!isEmptyText(i)) return false;
    if (count_ == 1) return true;
    if (i + 1 == count_ || !is(i + 1, NODE4_POWER)) return false;
    return i == 0 || !(is(i - 1, NODE4_OPERATOR) || isClose(i - 1));
  }

  void placeHorizontally() {
    long x = 0;
    long lift = 0;
    for (unsigned long i = 0; i < count_; ++i) {
      BoxS& box = boxes_[i];
      box.dx = x;
      box.dy = lift;
      x += box.width;
      if (is(i, NODE4_TEXT) && !isEmptyText(i)) x += gap_;
      if (is(i, NODE4_OPERATOR)) x += gap_;
      if (is(i, NODE4_POWER)) {
        x += gap_;
        pushBaseDown(i);
      }
      if (isOpen(i)) lift += overhang_;
      if (isClose(i)) {
        if (i >= 2 && isOpen(i - 2) && isEmptyText(i - 1)) {
          box.dx += 2;
          x += 2;
        }
        lift -= overhang_;
        box.dy = lift;
      }
    }
    own_.width = x - gap_;
    for (unsigned long i = 0; i < count_; ++i) {
      if (is(i, NODE4_TEXT) || is(i, NODE4_OPERATOR))
        own_.midHeight = std::max(own_.midHeight, boxes_[i].dy + boxes_[i].midHeight);
    }
  }

  void pushBaseDown(unsigned long power) {
    long const push = boxes_[power].height - 5;
    long depth = 0;
    for (unsigned long j = power; j-- > 0;) {
      boxes_[j].dy += push;
      if (isEmptyText(j) && !isPlaceholder(j)) continue;
      if (is(j, NODE4_POWER)) continue;
      if (isClose(j)) {
        ++depth;
      } else if (isOpen(j)) {
        if (--depth == 0) return;
      } else if (depth == 0) {
        return;
      }
    }
  }

  void alignVertically() {
    struct LevelS {
      long top;
      long bottom;
    };
    std::vector<LevelS> levels{{0, 0}};
    std::vector<unsigned long> opens;
    for (unsigned long i = 0; i < count_; ++i) {
      BoxS& box = boxes_[i];
      if (is(i, NODE4_TEXT) || is(i, NODE4_OPERATOR)) {
        box.dy = own_.midHeight - box.midHeight;
        levels.back().top = std::min(levels.back().top, box.dy);
        levels.back().bottom = std::max(levels.back().bottom, box.dy + box.height);
      } else if (is(i, NODE4_POWER)) {
        long base = own_.midHeight - graphics_.getTextMidHeight(wstring());
        if (i > 0) base = boxes_[i - 1].dy;
        if (i > 1 && isEmptyText(i - 1) && !isPlaceholder(i - 1)) base = boxes_[i - 2].dy;
        box.dy = base - box.height + 5;
        levels.back().top = std::min(levels.back().top, box.dy);
      } else if (isOpen(i)) {
        opens.push_back(i);
        levels.push_back({own_.midHeight, 0});
      } else {
        BoxS& open = boxes_[opens.back()];
        opens.pop_back();
        auto const [top, bottom] = levels.back();
        levels.pop_back();
        box.dy = open.dy = top - overhang_;
        box.height = open.height = bottom - box.dy + overhang_;
        box.midHeight = open.midHeight = own_.midHeight - box.dy;
        levels.back().top = std::min(levels.back().top, box.dy);
        levels.back().bottom = std::max(levels.back().bottom, box.dy + box.height);
      }
    }
    own_.height = levels.back().bottom;
  }

  Node4C const& row_;
  GraphicsABC const& graphics_;
  unsigned long count_;
  long gap_;
  long overhang_;
  std::vector<BoxS> boxes_;
  BoxS own_;
};

}  // namespace

std::string findLayoutDifference(Node4C const& tree, GraphicsABC const& graphics) {
  for (unsigned long i = 0; i < tree.numChildren(); ++i) {
    std::string const difference = findLayoutDifference(*tree.child(i), graphics);
    if (!difference.empty()) return difference;
  }
  if (tree.getType() != NODE4_LINE) return std::string();
  tree.selectFont(graphics);
  return RowC(tree, graphics).findDifference();
}

}  // namespace zolt::tests
