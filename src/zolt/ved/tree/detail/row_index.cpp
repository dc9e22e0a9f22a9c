#include "zolt/ved/tree/detail/row_index.h"

#include <algorithm>
#include <utility>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// A change within this many items of the edge of a stretch marks the neighbouring stretch too.
constexpr std::size_t edge = 2;

constexpr std::size_t ordinary_length = 96;

#ifdef ZOLT_VARIABLE_STRETCHES
thread_local std::size_t leastLengthHere = ordinary_length;
#endif

}  // namespace

BracketSumS sumBrackets(Node4C const& row, std::size_t first, std::size_t count) {
  BracketSumS sum;
  for (std::size_t i = first; i < first + count; ++i) {
    if (!row.child(i)->isEmptyText()) sum.add(row.child(i)->getType());
  }
  return sum;
}

#ifdef ZOLT_VARIABLE_STRETCHES

std::size_t RowIndexC::leastLength() { return leastLengthHere; }

bool RowIndexC::setLeastLength(std::size_t length) {
  leastLengthHere = length > 0 ? length : ordinary_length;
  return true;
}

#else

std::size_t RowIndexC::leastLength() { return ordinary_length; }

bool RowIndexC::setLeastLength(std::size_t) { return false; }

#endif

RowIndexC::RowIndexC(std::size_t count) {
  while (usualLength_ * usualLength_ < count) usualLength_ += usualLength_ / 4 * 2;
  replace(0, 0, {static_cast<std::uint32_t>(count)});
}

std::size_t RowIndexC::find(std::size_t i) const {
  std::size_t low = 0;
  std::size_t high = stretches_.size();
  while (high - low > 1) {
    std::size_t const middle = low + (high - low) / 2;
    if (stretches_[middle]->first <= i) {
      low = middle;
    } else {
      high = middle;
    }
  }
  return low;
}

void RowIndexC::markAround(std::size_t k, std::size_t i, std::uint8_t stale) {
  RowStretchS& stretch = *stretches_[k];
  stretch.stale |= stale;
  if (k > 0 && i < stretch.first + edge) stretches_[k - 1]->stale |= stale;
  if (k + 1 < stretches_.size() && i + edge >= stretch.first + stretch.count)
    stretches_[k + 1]->stale |= stale;
}

void RowIndexC::noteInserted(std::size_t i, std::size_t count, std::uint8_t stale) {
  std::size_t const k = find(i);
  auto const added = static_cast<std::uint32_t>(count);
  stretches_[k]->count += added;
  for (std::size_t j = k + 1; j < stretches_.size(); ++j) stretches_[j]->first += added;
  markAround(k, i, stale);
  markAround(k, i + count, stale);
}

void RowIndexC::noteRemoved(std::size_t i, std::size_t count, std::uint8_t stale) {
  auto const end = static_cast<std::uint32_t>(i + count);
  std::size_t const k = find(i);
  markAround(k, i, stale);
  std::uint32_t removed = 0;
  for (std::size_t j = k; j < stretches_.size(); ++j) {
    RowStretchS& stretch = *stretches_[j];
    std::uint32_t const first = std::max(stretch.first, static_cast<std::uint32_t>(i));
    std::uint32_t const last = std::min(stretch.first + stretch.count, end);
    stretch.first -= removed;
    if (first >= last) continue;
    stretch.count -= last - first;
    removed += last - first;
    stretch.stale |= stale;
  }
  markAround(find(i), i, stale);
}

void RowIndexC::noteChanged(std::size_t i, std::uint8_t stale) { markAround(find(i), i, stale); }

void RowIndexC::mark(std::uint8_t stale) {
  for (auto const& stretch : stretches_) stretch->stale |= stale;
}

void RowIndexC::clear(StaleE stale) {
  clearColumnMark(stale);
  for (auto const& stretch : stretches_) stretch->stale &= static_cast<std::uint8_t>(~stale);
}

void RowIndexC::replace(std::size_t k, std::size_t count, std::vector<std::uint32_t> const& lengths) {
  std::vector<std::unique_ptr<RowStretchS>> fresh;
  fresh.reserve(lengths.size());
  for (std::uint32_t const length : lengths) {
    auto stretch = std::make_unique<RowStretchS>();
    stretch->count = length;
    stretch->stale = 0xFF;
    // Most blocks of the records are as they were.
    if (fresh.size() < count) stretch->record = stretches_[k + fresh.size()]->record;
    fresh.push_back(std::move(stretch));
  }
  auto const from = stretches_.begin() + static_cast<std::ptrdiff_t>(k);
  auto const rest = stretches_.erase(from, from + static_cast<std::ptrdiff_t>(count));
  stretches_.insert(rest, std::make_move_iterator(fresh.begin()), std::make_move_iterator(fresh.end()));
  countFirst(k);
}

/// Numbers the items of stretch k and of all after it.
void RowIndexC::countFirst(std::size_t k) {
  std::uint32_t first = k > 0 ? stretches_[k - 1]->first + stretches_[k - 1]->count : 0;
  for (std::size_t j = k; j < stretches_.size(); ++j) {
    stretches_[j]->first = first;
    first += stretches_[j]->count;
  }
}

}  // namespace zolt::math::ved
