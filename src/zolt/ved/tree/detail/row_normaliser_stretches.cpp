// The part of the normaliser that does long rows stretch by stretch.

#include <algorithm>
#include <utility>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/detail/row_normaliser.h"

namespace zolt::math::ved {

namespace {

bool isText(Node4C const& node) { return node.getType() == NODE4_TEXT; }
bool isEmptyText(Node4C const& node) { return isText(node) && node.crefText().empty(); }

/// Whether a stretch may start with these items, so that it can be laid out without looking back: an exponent
/// stands in one stretch with its base, a closing bracket behind an empty text with what may be its partner.
/// Texts that stand together count as one.
bool mayStart(Node4C const& row, std::size_t first, std::size_t count) {
  for (std::size_t i = first; i < first + count; ++i) {
    Node4C const& item = *row.child(i);
    if (!isText(item)) return item.getType() != NODE4_POWER && !isClosingBracket(item.getType());
    if (item.sizeText() > 0) return true;
  }
  return false;
}

bool mayStart(Node4C const& row, RowStretchS const& stretch) {
  return stretch.first == 0 || mayStart(row, stretch.first, stretch.count);
}

void countBrackets(Node4C const& row, RowStretchS& stretch) {
  stretch.opens = stretch.closes = 0;
  stretch.hasAutoBrackets = false;
  for (unsigned long i = stretch.first; i < stretch.first + stretch.count; ++i) {
    switch (row.child(i)->getType()) {
      case NODE4_OPEN:
        ++stretch.opens;
        break;
      case NODE4_CLOSE:
        if (stretch.opens > 0) {
          --stretch.opens;
        } else {
          ++stretch.closes;
        }
        break;
      case NODE4_AUTO_OPEN:
      case NODE4_AUTO_CLOSE:
        stretch.hasAutoBrackets = true;
        break;
      default:
        break;
    }
  }
}

/// So short that it is joined with a neighbour.
bool isTooShort(RowStretchS const& stretch, std::size_t usualLength) {
  return stretch.count < usualLength / 4;
}

/// Whether the stretch can stay as it is: texts and other items alternate, and it is neither too long nor too
/// short.
bool isInOrder(Node4C const& row, RowStretchS const& stretch, bool last, std::size_t usualLength) {
  if (stretch.count % 2 != (last ? 1 : 0) || stretch.count > 2 * usualLength ||
      isTooShort(stretch, usualLength)) {
    return false;
  }
  for (unsigned long i = 0; i < stretch.count; ++i) {
    if (isText(*row.child(stretch.first + i)) != (i % 2 == 0)) return false;
  }
  return (last && stretch.count == 1) || mayStart(row, stretch);
}

std::vector<std::uint32_t> cutIntoStretches(Node4C const& row, std::size_t first, std::size_t count,
                                            std::size_t usualLength) {
  std::vector<std::uint32_t> lengths;
  std::size_t start = 0;
  for (std::size_t i = usualLength; i + usualLength / 2 < count; i += 2) {
    if (i - start < usualLength || !mayStart(row, first + i, 2)) continue;
    lengths.push_back(static_cast<std::uint32_t>(i - start));
    start = i;
  }
  lengths.push_back(static_cast<std::uint32_t>(count - start));
  return lengths;
}

}  // namespace

void Node4C::buildIndex() {
  index_ = std::make_unique<RowIndexC>(children_.size());
  index_->replace(0, 1, cutIntoStretches(*this, 0, children_.size(), index_->getUsualLength()));
  for (std::size_t k = 0; k < index_->size(); ++k) enterStretch((*index_)[k]);
}

void Node4C::dropIndex() {
  if (!index_) return;
  for (Node4C* item : children_) {
    if (!item || !item->stretch_) continue;
    item->dx_ += item->stretch_->dx;
    item->dy_ += item->stretch_->dy;
    item->stretch_ = nullptr;
  }
  index_.reset();
}

void Node4C::enterStretch(RowStretchS& stretch) {
  for (std::uint32_t i = stretch.first; i < stretch.first + stretch.count; ++i) {
    children_[i]->parent_ = this;
    children_[i]->slotHint_ = i;
    children_[i]->stretch_ = &stretch;
  }
  countBrackets(*this, stretch);
}

bool RowNormaliserC::normaliseStretches(Node4C& row) {
  RowIndexC& index = *row.index_;
  hasAutoBrackets_ = false;
  if (index.isOutgrown(row.numChildren()) || !flatten(row)) return false;
  if (hasAutoBrackets_ && !promoteInStretches(row)) return false;
  dirty_.assign(index.size(), false);
  for (std::size_t k = 0; k < index.size(); ++k) {
    RowStretchS const& stretch = index[k];
    unmatched_.add(stretch.closes, stretch.opens);
    bool const checked = !(stretch.stale & Node4C::STALE_CHECK);
    dirty_[k] = stretch.hasAutoBrackets ||
                !(checked || isInOrder(row, stretch, k + 1 == index.size(), index.getUsualLength()));
  }
  if (unmatched_.closes > 0) dirty_.front() = true;
  if (unmatched_.opens > 0) dirty_.back() = true;

  auto const ranges = findRanges(row);
  for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) rebuildRange(row, *range);
  return true;
}

/// Puts the items of nested rows into the row itself and counts brackets where something changed. False when
/// the row holds what only rows under construction hold.
bool RowNormaliserC::flatten(Node4C& row) {
  RowIndexC& index = *row.index_;
  for (std::size_t k = 0; k < index.size(); ++k) {
    RowStretchS& stretch = index[k];
    hasAutoBrackets_ |= stretch.hasAutoBrackets;
    if (!(stretch.stale & Node4C::STALE_CHECK)) continue;
    for (unsigned long i = stretch.first; i < stretch.first + stretch.count;) {
      Node4C* const item = row.child(i);
      if (!item || (isText(*item) && item->numChildren() > 0)) return false;
      if (item->getType() != NODE4_LINE) {
        ++i;
        continue;
      }
      dissolve(row, i);
    }
    countBrackets(row, stretch);
    hasAutoBrackets_ |= stretch.hasAutoBrackets;
  }
  return true;
}

/// Puts the items of the row in slot i in its place. (The calls of the tree that do so would mark the rows
/// around for normalisation, which is under way.)
void RowNormaliserC::dissolve(Node4C& row, unsigned long i) {
  RowIndexC& index = *row.index_;
  Node4C* const inner = row.child(i);
  unsigned long const count = inner->numChildren();
  row.touch(Node4C::STALE_LAYOUT | Node4C::STALE_RECORD);
  row.children_.insertSlots(i + 1, count);
  index.noteInserted(i + 1, count, Node4C::STALE_ALL);
  for (unsigned long k = 0; k < count; ++k) row.adopt(i + 1 + k, inner->children_[k]);
  inner->children_.clear();
  delete inner;
  row.children_.erase(i);
  index.noteRemoved(i, 1, Node4C::STALE_ALL);
}

/// A supplied bracket becomes the user's own as soon as something stands outside it. False when the first or
/// the last stretch has nothing that could.
bool RowNormaliserC::promoteInStretches(Node4C& row) {
  RowIndexC& index = *row.index_;
  std::size_t const last = index.size() - 1;
  auto const promoteIn = [&](std::size_t k, Node4TypeE type, bool outside) {
    RowStretchS const& stretch = index[k];
    for (unsigned long n = 0; n < stretch.count; ++n) {
      unsigned long const i = type == NODE4_AUTO_OPEN ? n : stretch.count - 1 - n;
      Node4C& item = *row.child(stretch.first + i);
      if (item.getType() == type) {
        if (outside) promote(item);
      } else if (!isEmptyText(item)) {
        outside = true;
      }
    }
    return outside;
  };
  if (!promoteIn(0, NODE4_AUTO_OPEN, false) || !promoteIn(last, NODE4_AUTO_CLOSE, false)) return false;
  for (std::size_t k = 0; k <= last; ++k) {
    if (!index[k].hasAutoBrackets) continue;
    if (k > 0) promoteIn(k, NODE4_AUTO_OPEN, true);
    if (k < last) promoteIn(k, NODE4_AUTO_CLOSE, true);
    countBrackets(row, index[k]);
  }
  return true;
}

/// What is put together anew: the stretches that are not in order, with the one behind, whose first text may
/// be merged with what comes before it.
std::vector<RowNormaliserC::RangeS> RowNormaliserC::findRanges(Node4C const& row) const {
  RowIndexC const& index = *row.index_;
  std::vector<RangeS> ranges;
  for (std::size_t k = 0; k < index.size(); ++k) {
    if (!dirty_[k]) continue;
    std::size_t first = k;
    if (k + 1 == index.size() && k > 0 && isTooShort(index[k], index.getUsualLength())) --first;
    while (first > 0 && !mayStart(row, index[first])) --first;
    std::size_t end = k + 1;
    while (end < index.size() && (dirty_[end - 1] || index[end - 1].count == 0)) ++end;
    while (!ranges.empty() && ranges.back().end >= first) {
      first = std::min(first, ranges.back().first);
      ranges.pop_back();
    }
    ranges.push_back({first, end});
    k = end - 1;
  }
  return ranges;
}

void RowNormaliserC::rebuildRange(Node4C& row, RangeS range) {
  RowIndexC& index = *row.index_;
  std::size_t const at = index[range.first].first;
  std::size_t const end = index[range.end - 1].first + index[range.end - 1].count;
  row_.clear();
  if (range.first == 0) {
    for (unsigned long i = 0; i < unmatched_.closes; ++i) append(make(NODE4_AUTO_OPEN));
  }
  for (std::size_t i = at; i < end; ++i) {
    NodeT item(std::exchange(row.children_[i], nullptr));
    Node4TypeE const type = item->getType();
    if (type != NODE4_AUTO_OPEN && type != NODE4_AUTO_CLOSE) append(std::move(item));
  }
  if (range.end == index.size()) appendEnd();

  row.touch(Node4C::STALE_LAYOUT | Node4C::STALE_RECORD);
  std::size_t const before = end - at;
  if (row_.size() > before) {
    row.children_.insertSlots(end, row_.size() - before);
  } else if (row_.size() < before) {
    row.children_.erase(at + row_.size(), before - row_.size());
  }
  for (std::size_t i = 0; i < row_.size(); ++i) row.children_[at + i] = row_[i].release();
  auto const lengths = cutIntoStretches(row, at, row_.size(), index.getUsualLength());
  index.replace(range.first, range.end - range.first, lengths);
  for (std::size_t k = 0; k < lengths.size(); ++k) row.enterStretch(index[range.first + k]);
}

}  // namespace zolt::math::ved
