#include "zolt/ved/tree/detail/row_normaliser.h"

#include <algorithm>
#include <utility>

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

namespace {

bool isText(Node4C const& node) { return node.getType() == NODE4_TEXT; }

/// The last item before item i that is not an empty text; null when there is none.
Node4C const* findBefore(Node4C const& row, std::size_t i) {
  while (i > 0 && row.child(i - 1)->isEmptyText()) --i;
  return i > 0 ? row.child(i - 1) : nullptr;
}

std::unique_ptr<Node4C> make(Node4TypeE type) { return std::make_unique<Node4C>(type); }

std::uint32_t more(std::uint32_t a, std::uint32_t b) { return a > b ? a - b : 0; }

}  // namespace

void RowNormaliserC::normalise() {
  auto& index = row_.state_.index;
  if (index && index->isOutgrown(row_.numChildren())) {
    row_.dropIndex();
    stretches_ = RowStretchesC(nullptr, row_.numChildren());
  }
  BracketSumS sum;
  for (std::size_t k = 0; k < stretches_.size(); ++k) {
    RowStretchS& stretch = stretches_[k];
    if (stretch.stale & STALE_CHECK) {
      flatten(stretch);
      count(stretch);
    }
    sum.add(stretch.brackets);
  }
  if (sum.overtaken) {
    promoteOvertaken(NODE4_AUTO_OPEN);
    promoteOvertaken(NODE4_AUTO_CLOSE);
    sum = countAll();
  }
  supplied_ = {more(sum.closes, sum.autoOpens), more(sum.opens, sum.autoCloses),
               more(sum.autoOpens, sum.closes), more(sum.autoCloses, sum.opens)};
  if (findDirty()) {
    for (std::size_t end = dirty_.size(); end > 0; --end) {
      if (!dirty_[end - 1]) continue;
      std::size_t first = end - 1;
      while (first > 0 && dirty_[first - 1]) --first;
      rebuild(first, end);
      end = first + 1;
    }
  }
  keepStretches();
}

// ---- What is in the stretches -----------------------------------------------------------------------------

/// Replaces nested rows by their items, and moves the children of a text to after it. (Node4C's members are
/// not used for this, since they would mark the rows around for normalisation, which is in progress.)
void RowNormaliserC::flatten(RowStretchS& stretch) {
  for (std::size_t i = stretch.first; i < stretch.first + stretch.count;) {
    Node4C* const item = row_.child(i);
    bool const stays = item && item->getType() != NODE4_LINE;
    if (stays && (!isText(*item) || item->numChildren() == 0)) {
      ++i;
      continue;
    }
    row_.touch(STALE_LAYOUT | STALE_RECORD);
    if (item) {
      unsigned long const count = item->numChildren();
      openSlots(stretch, i + 1, count);
      for (unsigned long k = 0; k < count; ++k) row_.adopt(i + 1 + k, item->children_[k]);
      item->children_.clear();
    }
    if (stays) continue;
    delete item;
    closeSlot(stretch, i);
  }
}

void RowNormaliserC::openSlots(RowStretchS& stretch, std::size_t i, std::size_t count) {
  row_.children_.insertSlots(i, count);
  if (row_.state_.index) {
    row_.state_.index->noteInserted(i, count, STALE_ALL);
  } else {
    stretch.count += static_cast<std::uint32_t>(count);
  }
}

void RowNormaliserC::closeSlot(RowStretchS& stretch, std::size_t i) {
  row_.children_.erase(i);
  if (row_.state_.index) {
    row_.state_.index->noteRemoved(i, 1, STALE_ALL);
  } else {
    --stretch.count;
  }
}

void RowNormaliserC::count(RowStretchS& stretch) {
  stretch.brackets = BracketSumS();
  for (std::size_t i = stretch.first; i < stretch.first + stretch.count; ++i) {
    if (!row_.child(i)->isEmptyText()) stretch.brackets.add(row_.child(i)->getType());
  }
}

BracketSumS RowNormaliserC::countAll() {
  BracketSumS sum;
  for (std::size_t k = 0; k < stretches_.size(); ++k) sum.add(stretches_[k].brackets);
  return sum;
}

/// A supplied bracket becomes a typed one as soon as there is something outside it.
void RowNormaliserC::promoteOvertaken(Node4TypeE type) {
  bool const opens = type == NODE4_AUTO_OPEN;
  bool outside = false;
  for (std::size_t n = 0; n < stretches_.size(); ++n) {
    RowStretchS& stretch = stretches_[opens ? n : stretches_.size() - 1 - n];
    BracketSumS const sum = stretch.brackets;
    if ((opens ? sum.autoOpens : sum.autoCloses) == 0) {
      outside |= sum.hasOthers(type);
      continue;
    }
    for (std::size_t m = 0; m < stretch.count; ++m) {
      Node4C& item = *row_.child(stretch.first + (opens ? m : stretch.count - 1 - m));
      if (item.getType() != type) {
        outside |= !item.isEmptyText();
      } else if (outside) {
        item.touch(STALE_RECORD);
        item.type_ = opens ? NODE4_OPEN : NODE4_CLOSE;
      }
    }
    count(stretch);
  }
}

// ---- What is rebuilt --------------------------------------------------------------------------------------

/// Finds the stretches that must be rebuilt: those that are not in order, those that gain or lose supplied
/// brackets, and the neighbours that these affect. False when there are none.
bool RowNormaliserC::findDirty() {
  std::size_t const size = stretches_.size();
  dirty_.clear();
  auto const add = [&](std::size_t k) {
    dirty_.resize(size);
    dirty_[k] = true;
  };
  for (std::size_t k = 0; k < size; ++k) {
    if ((stretches_[k].stale & STALE_CHECK) && !isInOrder(k)) add(k);
  }
  if (supplied_.missingOpens > 0) add(0);
  if (supplied_.missingCloses > 0) add(size - 1);
  std::uint32_t surplus = supplied_.surplusOpens;
  for (std::size_t k = 0; surplus > 0; ++k) {
    add(k);
    surplus = more(surplus, stretches_[k].brackets.autoOpens);
  }
  surplus = supplied_.surplusCloses;
  for (std::size_t k = size; surplus > 0;) {
    add(--k);
    surplus = more(surplus, stretches_[k].brackets.autoCloses);
  }
  // The first text of the next stretch may be merged with what comes before it. A stretch that may not start
  // where it does is joined with the one before it, and so is a last stretch that is too short.
  for (std::size_t k = dirty_.size(); k-- > 0;) {
    if (!dirty_[k]) continue;
    if (k + 1 < size) dirty_[k + 1] = true;
    bool const isJoined =
        !mayStart(stretches_[k].first, stretches_[k].count) || (k + 1 == size && isTooShort(stretches_[k]));
    if (k > 0 && isJoined) dirty_[k - 1] = true;
  }
  return !dirty_.empty();
}

/// Whether the stretch can stay as it is: texts and other items alternate, and
/// it is neither too long nor too short.
bool RowNormaliserC::isInOrder(std::size_t k) {
  RowStretchS const& stretch = stretches_[k];
  bool const isLast = k + 1 == stretches_.size();
  if (stretch.count % 2 != (isLast ? 1 : 0) || isTooShort(stretch)) return false;
  if (row_.state_.index && stretch.count > 2 * row_.state_.index->getUsualLength()) return false;
  for (std::size_t i = 0; i < stretch.count; ++i) {
    if (isText(*row_.child(stretch.first + i)) != (i % 2 == 0)) return false;
  }
  return (isLast && stretch.count == 1) || mayStart(stretch.first, stretch.count);
}

bool RowNormaliserC::isTooShort(RowStretchS const& stretch) const {
  return row_.state_.index && stretch.count < row_.state_.index->getUsualLength() / 4;
}

/// Whether a stretch may start with these items, so that it can be laid out without looking back: an exponent
/// is in the same stretch as its base, and an empty pair of brackets is in one stretch. Adjacent texts count
/// as one.
bool RowNormaliserC::mayStart(std::size_t first, std::size_t count) const {
  if (first == 0) return true;
  for (std::size_t i = first; i < first + count; ++i) {
    Node4C const& item = *row_.child(i);
    if (item.isEmptyText()) continue;
    Node4C const* const before = findBefore(row_, first);
    if (isClosingBracket(item.getType())) return !before || !isOpeningBracket(before->getType());
    if (item.getType() == NODE4_POWER) return before && before->getType() == NODE4_POWER;
    return true;
  }
  return false;
}

/// Rebuilds the stretches from `first` up to, but not including, `end`.
void RowNormaliserC::rebuild(std::size_t first, std::size_t end) {
  std::size_t const at = stretches_[first].first;
  std::size_t const count = stretches_[end - 1].first + stretches_[end - 1].count - at;
  bool const isLast = end == stretches_.size();
  items_.clear();
  if (first == 0) {
    for (; supplied_.missingOpens > 0; --supplied_.missingOpens) append(make(NODE4_AUTO_OPEN));
  }
  for (std::size_t i = at; i < at + count; ++i) {
    NodeT item(std::exchange(row_.children_[i], nullptr));
    if (first == 0 && item->getType() == NODE4_AUTO_OPEN && supplied_.surplusOpens > 0) {
      --supplied_.surplusOpens;
    } else if (isLast && item->getType() == NODE4_AUTO_CLOSE && supplied_.surplusCloses > 0) {
      --supplied_.surplusCloses;
    } else {
      append(std::move(item));
    }
  }
  if (isLast) {
    for (; supplied_.missingCloses > 0; --supplied_.missingCloses) append(make(NODE4_AUTO_CLOSE));
    if (items_.empty() || !isText(*items_.back())) items_.push_back(make(NODE4_TEXT));
  }

  row_.touch(STALE_LAYOUT | STALE_RECORD);
  if (items_.size() > count) {
    row_.children_.insertSlots(at + count, items_.size() - count);
  } else {
    row_.children_.erase(at + items_.size(), count - items_.size());
  }
  std::size_t const items = items_.size();
  for (std::size_t i = 0; i < items; ++i) row_.children_[at + i] = items_[i].release();
  if (row_.state_.index) {
    enterStretches(first, end - first, at, items);
  } else {
    for (std::size_t i = 0; i < items; ++i) row_.adopt(i, row_.children_[i]);
    row_.children_.shrink();
  }
}

void RowNormaliserC::append(NodeT item) {
  bool const afterText = !items_.empty() && isText(*items_.back());
  if (!isText(*item)) {
    if (!afterText) items_.push_back(make(NODE4_TEXT));
    items_.push_back(std::move(item));
  } else if (!afterText) {
    items_.push_back(std::move(item));
  } else {
    merge(*items_.back(), *item);
  }
}

void RowNormaliserC::merge(Node4C& text, Node4C const& next) {
  for (PlaceS* const place : {&places_.caret, &places_.anchor}) {
    if (place->node == &next) *place = {&text, place->pos + static_cast<unsigned>(text.sizeText())};
  }
  if (next.text_.empty()) return;
  text.text_ += next.text_;
  text.state_.stale |= STALE_LAYOUT | STALE_RECORD;
}

// ---- Where stretches begin --------------------------------------------------------------------------------

/// Makes the index of a row that has become long, and drops that of a row that has become short.
void RowNormaliserC::keepStretches() {
  auto& index = row_.state_.index;
  std::size_t const count = row_.numChildren();
  if (index && count < RowIndexC::leastItems() / 2) row_.dropIndex();
  if (index || count < RowIndexC::leastItems()) return;
  index = std::make_unique<RowIndexC>(count);
  enterStretches(0, 1, 0, count);
}

/// Cuts items into stretches, which replace `count` stretches from k on.
void RowNormaliserC::enterStretches(std::size_t k, std::size_t count, std::size_t first, std::size_t items) {
  RowIndexC& index = *row_.state_.index;
  std::size_t const length = index.getUsualLength();
  std::vector<std::uint32_t> lengths;
  std::size_t start = 0;
  for (std::size_t i = length; i + length / 2 < items; i += 2) {
    if (i - start < length || !mayStart(first + i, 2)) continue;
    lengths.push_back(static_cast<std::uint32_t>(i - start));
    start = i;
  }
  lengths.push_back(static_cast<std::uint32_t>(items - start));
  index.replace(k, count, lengths);
  for (std::size_t n = k; n < k + lengths.size(); ++n) {
    for (std::uint32_t i = index[n].first; i < index[n].first + index[n].count; ++i) {
      Node4C& item = *row_.children_[i];
      item.parent_ = &row_;
      item.state_.slotHint = i - index[n].first;
      item.state_.stretch = &index[n];
    }
    this->count(index[n]);
  }
}

}  // namespace zolt::math::ved
