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

}  // namespace

void RowNormaliserC::normalise() {
  auto& index = row_.state_.index;
  if (index && !index->fits(row_.numChildren())) {
    row_.dropIndex();
    stretches_ = RowStretchesC(nullptr, row_.numChildren());
  }
  for (std::size_t k = 0; k < stretches_.size(); ++k) {
    if ((stretches_[k].stale & STALE_CHECK) && !examine(stretches_[k])) markDirty(k);
  }
  BracketSumS sum = addUp();
  if (sum.overtaken) {
    promoteOvertaken(NODE4_AUTO_OPEN);
    promoteOvertaken(NODE4_AUTO_CLOSE);
    sum = addUp();
  }
  missingOpens_ = static_cast<long>(sum.closes) - static_cast<long>(sum.autoOpens);
  missingCloses_ = static_cast<long>(sum.opens) - static_cast<long>(sum.autoCloses);
  markEnd(missingOpens_, NODE4_AUTO_OPEN);
  markEnd(missingCloses_, NODE4_AUTO_CLOSE);
  for (std::size_t k = 0; k < stretches_.size(); ++k) {
    if ((stretches_[k].stale & STALE_CHECK) && !isWellCut(k)) markDirty(k);
  }
  for (std::size_t k = dirty_.size(); k-- > 0;) {
    if (!dirty_[k]) continue;
    // The first text of the next stretch may be merged with what comes before it.
    std::size_t const end = std::min(k + 2, dirty_.size());
    while (k > 0 && (dirty_[k - 1] || !mayStayApart(k))) --k;
    rebuild(k, end);
  }
}

// ---- What is in the stretches -----------------------------------------------------------------------------

/// Flattens a stretch and counts its brackets. False when texts and other items do not alternate in it.
bool RowNormaliserC::examine(RowStretchS& stretch) {
  bool alternates = true;
  stretch.brackets = BracketSumS();
  for (std::size_t i = 0; i < stretch.count;) {
    Node4C* const item = row_.child(stretch.first + i);
    if (!item || item->getType() == NODE4_LINE || (isText(*item) && item->numChildren() > 0)) {
      flatten(stretch.first + i);
      continue;
    }
    alternates &= isText(*item) == (i % 2 == 0);
    if (!item->isEmptyText()) stretch.brackets.add(item->getType());
    ++i;
  }
  return alternates;
}

/// Replaces item i, a nested row or nothing, by its items, or moves the children of a text to after it.
/// (Node4C's members are not used for this, since they would mark the rows around for normalisation, which is
/// in progress.)
void RowNormaliserC::flatten(std::size_t i) {
  Node4C* const item = row_.child(i);
  row_.touch(STALE_LAYOUT | STALE_RECORD);
  if (item) {
    unsigned long const count = item->numChildren();
    row_.children_.insertSlots(i + 1, count);
    stretches_.noteInserted(i + 1, count);
    for (unsigned long k = 0; k < count; ++k) row_.adopt(i + 1 + k, item->children_[k]);
    item->children_.clear();
    if (isText(*item)) return;
  }
  delete item;
  row_.children_.erase(i);
  stretches_.noteRemoved(i, 1);
}

BracketSumS RowNormaliserC::addUp() {
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
    if (stretch.brackets.countSupplied(type) == 0) {
      outside |= stretch.brackets.hasOthers(type);
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
    stretch.brackets = sumBrackets(row_, stretch.first, stretch.count);
  }
}

// ---- What is rebuilt --------------------------------------------------------------------------------------

void RowNormaliserC::markDirty(std::size_t k) {
  dirty_.resize(stretches_.size());
  dirty_[k] = true;
}

/// Marks the stretches at one end of the row that gain or lose supplied brackets.
void RowNormaliserC::markEnd(long missing, Node4TypeE type) {
  for (std::size_t n = 0; missing != 0; ++n) {
    std::size_t const k = type == NODE4_AUTO_OPEN ? n : stretches_.size() - 1 - n;
    markDirty(k);
    long const there = static_cast<long>(stretches_[k].brackets.countSupplied(type));
    missing = missing > 0 ? 0 : std::min(0L, missing + there);
  }
}

/// Whether the stretch begins and ends where it should.
bool RowNormaliserC::isWellCut(std::size_t k) {
  std::size_t const count = stretches_[k].count;
  bool const isLast = k + 1 == stretches_.size();
  return count % 2 == (isLast ? 1 : 0) && count <= 2 * stretches_.getUsualLength() && !isTooShort(k) &&
         mayStart(stretches_[k].first, count);
}

bool RowNormaliserC::isTooShort(std::size_t k) {
  return stretches_.size() > 1 && stretches_[k].count < stretches_.getUsualLength() / 4;
}

/// Whether the stretch need not be joined with the one before it.
bool RowNormaliserC::mayStayApart(std::size_t k) {
  bool const isLast = k + 1 == dirty_.size();
  return !(isLast && isTooShort(k)) && mayStart(stretches_[k].first, stretches_[k].count);
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

/// Rebuilds the stretches from `first` up to, but not including, `end`, and cuts them anew.
void RowNormaliserC::rebuild(std::size_t first, std::size_t end) {
  std::size_t const at = stretches_[first].first;
  std::size_t const count = stretches_[end - 1].first + stretches_[end - 1].count - at;
  bool const isLast = end == stretches_.size();
  items_.clear();
  for (; first == 0 && missingOpens_ > 0; --missingOpens_) append(std::make_unique<Node4C>(NODE4_AUTO_OPEN));
  for (std::size_t i = at; i < at + count; ++i) {
    NodeT item(std::exchange(row_.children_[i], nullptr));
    if (first == 0 && item->getType() == NODE4_AUTO_OPEN && missingOpens_ < 0) {
      ++missingOpens_;
    } else if (isLast && item->getType() == NODE4_AUTO_CLOSE && missingCloses_ < 0) {
      ++missingCloses_;
    } else {
      append(std::move(item));
    }
  }
  if (isLast) {
    for (; missingCloses_ > 0; --missingCloses_) append(std::make_unique<Node4C>(NODE4_AUTO_CLOSE));
    if (items_.empty() || !isText(*items_.back())) items_.push_back(std::make_unique<Node4C>());
  }

  row_.touch(STALE_LAYOUT | STALE_RECORD);
  std::size_t const items = items_.size();
  if (items > count) {
    row_.children_.insertSlots(at + count, items - count);
  } else {
    row_.children_.erase(at + items, count - items);
  }
  for (std::size_t i = 0; i < items; ++i) row_.children_[at + i] = items_[i].release();
  auto& index = row_.state_.index;
  if (!index && items >= RowIndexC::leastItems()) index = std::make_unique<RowIndexC>(items);
  if (index) {
    cut(*index, first, end - first, at, items);
  } else {
    for (std::size_t i = 0; i < items; ++i) row_.adopt(i, row_.children_[i]);
    row_.children_.shrink();
  }
}

void RowNormaliserC::append(NodeT item) {
  bool const afterText = !items_.empty() && isText(*items_.back());
  if (isText(*item) && afterText) return merge(*items_.back(), *item);
  if (!isText(*item) && !afterText) items_.push_back(std::make_unique<Node4C>());
  items_.push_back(std::move(item));
}

void RowNormaliserC::merge(Node4C& text, Node4C const& next) {
  for (PlaceS* const place : {&places_.caret, &places_.anchor}) {
    if (place->node == &next) *place = {&text, place->pos + static_cast<unsigned>(text.sizeText())};
  }
  if (next.text_.empty()) return;
  text.text_ += next.text_;
  text.state_.stale |= STALE_LAYOUT | STALE_RECORD;
}

/// Cuts items into stretches, which replace `count` stretches from k on.
void RowNormaliserC::cut(RowIndexC& index, std::size_t k, std::size_t count, std::size_t first,
                         std::size_t items) {
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
    RowStretchS& stretch = index[n];
    for (std::uint32_t i = 0; i < stretch.count; ++i) {
      Node4C& item = *row_.children_[stretch.first + i];
      item.parent_ = &row_;
      item.state_.slotHint = i;
      item.state_.stretch = &stretch;
    }
    stretch.brackets = sumBrackets(row_, stretch.first, stretch.count);
  }
}

}  // namespace zolt::math::ved
