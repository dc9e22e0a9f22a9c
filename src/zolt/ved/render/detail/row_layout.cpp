#include "zolt/ved/render/detail/row_layout.h"

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

wstring const empty_text;

}  // namespace

RowLayoutC::RowLayoutC(Node4C& row, GraphicsABC const& graphics)
    : row_(row),
      graphics_(graphics),
      count_(row.numChildren()),
      gap_(graphics.getMetric(0)),
      overhang_(graphics.getMetric(2)) {}

void RowLayoutC::layout() {
  placeHorizontally();
  findAxis();
  alignVertically();
}

void RowLayoutC::placeHorizontally() {
  long x = 0;
  long lift = 0;
  for (unsigned long i = 0; i < count_; ++i) {
    Node4C& item = *row_.child(i);
    item.setDX(x);
    item.setDY(lift);
    x += item.getWidth();
    switch (item.getType()) {
      case NODE4_TEXT:
        if (item.sizeText() > 0) x += gap_;
        break;
      case NODE4_OPERATOR:
        x += gap_;
        break;
      case NODE4_POWER:
        x += gap_;
        if (i > 0) pushBaseDown(i);
        break;
      case NODE4_OPEN:
      case NODE4_AUTO_OPEN:
        lift += overhang_;
        break;
      case NODE4_CLOSE:
      case NODE4_AUTO_CLOSE: {
        bool const emptyPair =
            i > 1 && isOpeningBracket(row_.child(i - 2)->getType()) && row_.child(i - 1)->isEmptyText();
        if (emptyPair) {
          item.setDX(item.getDX() + empty_pair_gap);
          x += empty_pair_gap;
        }
        lift -= overhang_;
        item.setDY(lift);
        break;
      }
      default:
        break;
    }
  }
  row_.setWidth(x - gap_);
}

bool RowLayoutC::isPassedOver(unsigned long i) const {
  Node4C const& item = *row_.child(i);
  return item.isEmptyText() && !item.isPlaceholder();
}

void RowLayoutC::prepareExponents() {
  baseStart_.assign(count_, 0);
  pushSteps_.assign(count_ + 1, 0);
  for (unsigned long i = 0; i < count_; ++i) {
    Node4TypeE const type = row_.child(i)->getType();
    if (isOpeningBracket(type)) {
      opens_.push_back(i);
    } else if (isClosingBracket(type) && !opens_.empty()) {
      baseStart_[i] = opens_.back();
      opens_.pop_back();
    }
  }
}

// The base of an exponent is the item before it or the whole bracketed group before it, together with the
// exponents that stand on that already. Directly behind an opening bracket, where normalisation leaves none,
// everything back to the bracket's level counts as base.
unsigned long RowLayoutC::findBase(unsigned long power) const {
  long depth = 0;
  for (unsigned long i = power; i-- > 0;) {
    if (isPassedOver(i)) continue;
    Node4TypeE const type = row_.child(i)->getType();
    bool const isClose = isClosingBracket(type);
    if (isOpeningBracket(type)) {
      --depth;
    } else if (depth < 0) {
      if (isClose) ++depth;
    } else {
      return isClose || type == NODE4_POWER ? baseStart_[i] : i;
    }
  }
  return 0;
}

void RowLayoutC::pushBaseDown(unsigned long power) {
  if (baseStart_.empty()) prepareExponents();
  unsigned long const start = findBase(power);
  baseStart_[power] = start;
  long const push = row_.child(power)->getHeight() - exponent_overlap;
  pushSteps_[start] += push;
  pushSteps_[power] -= push;
}

void RowLayoutC::findAxis() {
  long midHeight = 0;
  long push = 0;
  for (unsigned long i = 0; i < count_; ++i) {
    Node4C& item = *row_.child(i);
    if (!pushSteps_.empty()) {
      push += pushSteps_[i];
      item.setDY(item.getDY() + push);
    }
    if (item.getType() == NODE4_TEXT || item.getType() == NODE4_OPERATOR) {
      Node4C::max1stDim(midHeight, item.getDY() + item.getMidHeight());
    }
  }
  row_.setMidHeight(midHeight);
}

void RowLayoutC::alignVertically() {
  long const axis = row_.getMidHeight();
  levels_.push_back({none, 0, 0});
  for (unsigned long i = 0; i < count_; ++i) {
    Node4C& item = *row_.child(i);
    switch (item.getType()) {
      case NODE4_POWER:
        item.setDY(findBaseTop(i) - item.getHeight() + exponent_overlap);
        levels_.back().include(item.getDY(), levels_.back().bottom);
        break;
      case NODE4_OPEN:
      case NODE4_AUTO_OPEN:
        levels_.push_back({i, axis, 0});
        break;
      case NODE4_CLOSE:
      case NODE4_AUTO_CLOSE:
        closeLevel(item);
        break;
      default:
        item.setDY(axis - item.getMidHeight());
        levels_.back().include(item.getDY(), item.getDY() + item.getHeight());
    }
  }
  row_.setHeight(levels_.front().bottom);
}

long RowLayoutC::findBaseTop(unsigned long power) const {
  if (power == 0) return row_.getMidHeight() - graphics_.getTextMidHeight(empty_text);
  bool const skip = power > 1 && isPassedOver(power - 1);
  return row_.child(skip ? power - 2 : power - 1)->getDY();
}

void RowLayoutC::closeLevel(Node4C& close) {
  if (levels_.size() < 2) return;
  LevelS const level = levels_.back();
  levels_.pop_back();
  long const top = level.top - overhang_;
  long const height = level.bottom - top + overhang_;
  for (Node4C* bracket : {row_.child(level.open), &close}) {
    bracket->setDY(top);
    bracket->setHeight(height);
    bracket->setMidHeight(row_.getMidHeight() - top);
  }
  levels_.back().include(top, top + height);
}

}  // namespace zolt::math::ved
