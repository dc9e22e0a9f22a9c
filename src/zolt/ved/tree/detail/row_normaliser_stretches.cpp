// The part of the normaliser that does long rows stretch by stretch.

#include <algorithm>
#include <utility>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/detail/row_normaliser.h"

namespace zolt::math::ved {

namespace {

bool isText(Node4C const& node) { return node.getType() == NODE4_TEXT; }

/// Whether an opening bracket stands before item i, with nothing between.
bool isBehindOpeningBracket(Node4C const& row, std::size_t i) {
  while (i > 0 && row.child(i - 1)->isEmptyText()) --i;
  return i > 0 && isOpeningBracket(row.child(i - 1)->getType());
}

/// Whether an exponent stands before item i, so that one behind it has an empty base of its own.
bool isBehindPower(Node4C const& row, std::size_t i) {
  while (i > 0 && row.child(i - 1)->isEmptyText()) --i;
  return i > 0 && row.child(i - 1)->getType() == NODE4_POWER;
}

/// Whether a stretch may start with these items, so that it can be laid out without looking back: an exponent
/// stands in one stretch with its base, a pair of brackets with nothing between in one. Texts that stand
/// together count as one.
bool mayStart(Node4C const& row, std::size_t first, std::size_t count) {
  for (std::size_t i = first; i < first + count; ++i) {
    Node4C const& item = *row.child(i);
    if (isClosingBracket(item.getType())) return !isBehindOpeningBracket(row, first);
    if (item.getType() == NODE4_POWER) return isBehindPower(row, first);
    if (!isText(item)) return true;
    if (item.sizeText() > 0) return true;
  }
  return false;
}

bool mayStart(Node4C const& row, RowStretchS const& stretch) {
  return stretch.first == 0 || mayStart(row, stretch.first, stretch.count);
}

void countBrackets(Node4C const& row, RowStretchS& stretch) {
  stretch.opens = stretch.closes = 0;
  SuppliedBracketsS opens;
  SuppliedBracketsS closes;
  for (unsigned long i = stretch.first; i < stretch.first + stretch.count; ++i) {
    Node4C const& item = *row.child(i);
    if (item.getType() == NODE4_AUTO_OPEN) {
      ++opens.count;
      opens.overtaken |= opens.others;
    } else if (!item.isEmptyText()) {
      opens.others = true;
    }
    if (item.getType() == NODE4_AUTO_CLOSE) {
      ++closes.count;
    } else if (!item.isEmptyText()) {
      closes.others = true;
      closes.overtaken |= closes.count > 0;
    }
    switch (item.getType()) {
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
      default:
        break;
    }
  }
  stretch.autoOpens = opens;
  stretch.autoCloses = closes;
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
    item->slotHint_ += item->stretch_->first;
    item->dx_ += item->stretch_->dx;
    item->dy_ += item->stretch_->dy;
    item->stretch_ = nullptr;
  }
  index_.reset();
}

void Node4C::enterStretch(RowStretchS& stretch) {
  for (std::uint32_t i = stretch.first; i < stretch.first + stretch.count; ++i) {
    children_[i]->parent_ = this;
    children_[i]->slotHint_ = i - stretch.first;
    children_[i]->stretch_ = &stretch;
  }
  countBrackets(*this, stretch);
}

bool RowNormaliserC::normaliseStretches(Node4C& row) {
  RowIndexC& index = *row.index_;
  if (index.isOutgrown(row.numChildren()) || !flatten(row)) return false;
  if (supplied_.opens + supplied_.closes > 0) promoteInStretches(row);
  if (!matchAutoBrackets(row)) return false;
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
    if (stretch.stale & Node4C::STALE_CHECK) {
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
    }
    addBrackets(stretch);
  }
  return true;
}

void RowNormaliserC::addBrackets(RowStretchS const& stretch) {
  unmatched_.add(stretch.closes, stretch.opens);
  supplied_.opens += stretch.autoOpens.count;
  supplied_.closes += stretch.autoCloses.count;
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

void RowNormaliserC::removeItems(Node4C& row, unsigned long first, unsigned long count) {
  if (count == 0) return;
  RowIndexC& index = *row.index_;
  row.touch(Node4C::STALE_LAYOUT | Node4C::STALE_RECORD);
  for (unsigned long i = first; i < first + count; ++i) delete row.child(i);
  index.noteRemoved(first, count, Node4C::STALE_ALL);
  row.children_.erase(first, count);
  for (std::size_t k = 0; k < index.size(); ++k) {
    if (index[k].stale & Node4C::STALE_CHECK) countBrackets(row, index[k]);
  }
}

/// A supplied bracket becomes the user's own as soon as something stands outside it.
void RowNormaliserC::promoteInStretches(Node4C& row) {
  RowIndexC& index = *row.index_;
  auto const promoteAll = [&](RowStretchS& stretch, Node4TypeE type, bool outside) {
    for (unsigned long n = 0; n < stretch.count; ++n) {
      unsigned long const i = type == NODE4_AUTO_OPEN ? n : stretch.count - 1 - n;
      Node4C& item = *row.child(stretch.first + i);
      if (item.getType() == type) {
        if (outside) promote(item);
      } else if (!item.isEmptyText()) {
        outside = true;
      }
    }
    countBrackets(row, stretch);
  };
  bool outside = false;
  for (std::size_t k = 0; k < index.size(); ++k) {
    SuppliedBracketsS const& opens = index[k].autoOpens;
    bool const others = opens.others;
    if (opens.count > 0 && (outside || opens.overtaken)) promoteAll(index[k], NODE4_AUTO_OPEN, outside);
    outside |= others;
  }
  outside = false;
  for (std::size_t k = index.size(); k-- > 0;) {
    SuppliedBracketsS const& closes = index[k].autoCloses;
    bool const others = closes.others;
    if (closes.count > 0 && (outside || closes.overtaken)) promoteAll(index[k], NODE4_AUTO_CLOSE, outside);
    outside |= others;
  }
  unmatched_ = supplied_ = {};
  for (std::size_t k = 0; k < index.size(); ++k) addBrackets(index[k]);
}

/// Compares the supplied brackets, which stand at the ends of the row by now, with the typed ones that have
/// no partner: `missing_` are to come, those too many go. False when the ends are not in order.
bool RowNormaliserC::matchAutoBrackets(Node4C& row) {
  auto const more = [](unsigned long a, unsigned long b) { return a > b ? a - b : 0; };
  missing_ = {more(unmatched_.closes, supplied_.opens), more(unmatched_.opens, supplied_.closes)};
  if (supplied_.opens + supplied_.closes == 0) return true;
  if (!stepInside(row, caretNode_, caretPos_) || !stepInside(row, anchorNode_, anchorPos_)) return false;

  unsigned long const fromStart = 2 * more(supplied_.opens, unmatched_.closes);
  unsigned long const fromEnd = 2 * more(supplied_.closes, unmatched_.opens);
  unsigned long const count = row.numChildren();
  if (fromStart + fromEnd >= count) return false;
  for (unsigned long i = 0; i < fromStart; i += 2) {
    if (!row.child(i)->isEmptyText() || row.child(i + 1)->getType() != NODE4_AUTO_OPEN) return false;
  }
  for (unsigned long i = count - fromEnd; i < count; i += 2) {
    if (row.child(i)->getType() != NODE4_AUTO_CLOSE || !row.child(i + 1)->isEmptyText()) return false;
  }
  removeItems(row, count - fromEnd, fromEnd);
  removeItems(row, 0, fromStart);
  return true;
}

bool RowNormaliserC::stepInside(Node4C const& row, Node4C*& node, unsigned& pos) {
  if (!node || node->getParent() != &row || !node->isEmptyText()) return true;
  unsigned long const count = row.numChildren();
  unsigned long i = node->findChildNumber();
  auto const isBehind = [&](unsigned long place, Node4TypeE type) {
    return place > 0 && row.child(place - 1)->getType() == type;
  };
  auto const isBefore = [&](unsigned long place, Node4TypeE type) {
    return place + 1 < count && row.child(place + 1)->getType() == type;
  };
  auto const isEmptyAt = [&](unsigned long place) {
    return place < count && row.child(place)->isEmptyText();
  };
  auto const place = [&](unsigned long text, bool atEnd) {
    if (!isText(*row.child(text))) return false;
    node = row.child(text);
    pos = atEnd ? static_cast<unsigned>(node->sizeText()) : 0;
    return true;
  };

  unsigned long first = i;
  while (first > 0 && isEmptyAt(first - 1)) --first;
  if (isBehind(first, NODE4_AUTO_CLOSE)) {
    while (isBehind(first, NODE4_AUTO_CLOSE) || (first > 0 && isEmptyAt(first - 1))) --first;
    if (first > 0 && !isText(*row.child(first))) --first;
    return place(first, true);
  }
  while (isEmptyAt(i + 1)) ++i;
  if (isBefore(i, NODE4_AUTO_OPEN)) {
    while (isBefore(i, NODE4_AUTO_OPEN) || isEmptyAt(i + 1)) ++i;
    if (i + 1 < count && !isText(*row.child(i))) ++i;
    return place(i, false);
  }
  return true;
}

/// The stretches that are not in order, or get a supplied bracket, upwards.
std::vector<std::size_t> RowNormaliserC::findDirty(Node4C const& row) const {
  RowIndexC const& index = *row.index_;
  std::vector<std::size_t> dirty;
  std::size_t const last = index.size() - 1;
  if (missing_.opens > 0) dirty.push_back(0);
  for (std::size_t k = dirty.size(); k <= last; ++k) {
    bool const changed = index[k].stale & Node4C::STALE_CHECK;
    if ((changed && !isInOrder(row, index[k], k == last, index.getUsualLength())) ||
        (k == last && missing_.closes > 0)) {
      dirty.push_back(k);
    }
  }
  return dirty;
}

/// What is put together anew: dirty stretches, with the one behind, whose first text may be merged with what
/// comes before it.
std::vector<RowNormaliserC::RangeS> RowNormaliserC::findRanges(Node4C const& row) const {
  RowIndexC const& index = *row.index_;
  std::vector<RangeS> ranges;
  for (std::size_t const k : findDirty(row)) {
    if (!ranges.empty() && k + 1 < ranges.back().end) continue;
    std::size_t first = k;
    if (k + 1 == index.size() && k > 0 && isTooShort(index[k], index.getUsualLength())) --first;
    while (first > 0 && !mayStart(row, index[first])) --first;
    std::size_t const end = std::min(k + 2, index.size());
    while (!ranges.empty() && ranges.back().end >= first) {
      first = std::min(first, ranges.back().first);
      ranges.pop_back();
    }
    ranges.push_back({first, end});
  }
  return ranges;
}

void RowNormaliserC::rebuildRange(Node4C& row, RangeS range) {
  RowIndexC& index = *row.index_;
  std::size_t const at = index[range.first].first;
  std::size_t const end = index[range.end - 1].first + index[range.end - 1].count;
  row_.clear();
  if (range.first == 0) {
    for (unsigned long i = 0; i < missing_.opens; ++i) append(make(NODE4_AUTO_OPEN));
  }
  for (std::size_t i = at; i < end; ++i) append(NodeT(std::exchange(row.children_[i], nullptr)));
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
