#include "zolt/ved/tree/detail/child_array.h"

#include <algorithm>

namespace zolt::math::ved {

void ChildArrayC::moveGap(std::uint32_t to) {
  std::uint32_t const way = gap_ < to ? to - gap_ : gap_ - to;
  if (way > size_ - way) {
    // The way past the two ends, which are one place of the ring, is shorter.
    slideGap(gap_ < to ? 0 : size_);
    first_ = static_cast<std::uint32_t>(wrap(first_ + (gap_ == 0 ? room() : size_)));
    gap_ = size_ - gap_;
  }
  slideGap(to);
}

void ChildArrayC::slideGap(std::uint32_t to) {
  Node4C** const all = data();
  // Each round moves what is in one piece, before and after.
  while (gap_ < to) {
    std::size_t const source = wrap(first_ + gap_ + room());
    std::size_t const target = wrap(first_ + gap_);
    std::size_t const count = std::min<std::size_t>(to - gap_, capacity_ - std::max(source, target));
    std::copy_n(all + source, count, all + target);
    gap_ += static_cast<std::uint32_t>(count);
  }
  while (gap_ > to) {
    std::size_t const source = wrap(first_ + gap_ - 1) + 1;
    std::size_t const target = wrap(first_ + gap_ - 1 + room()) + 1;
    std::size_t const count = std::min<std::size_t>(gap_ - to, std::min(source, target));
    std::copy_backward(all + source - count, all + source, all + target);
    gap_ -= static_cast<std::uint32_t>(count);
  }
}

/// Moves the slots into memory of their own, with the gap at the end.
void ChildArrayC::reallocate(std::uint32_t capacity) {
  moveGap(size_);
  std::size_t const piece = std::min<std::size_t>(size_, capacity_ - first_);
  Node4C* only = nullptr;
  Node4C** const fresh = capacity > 1 ? new Node4C*[capacity] : &only;
  std::copy_n(data() + first_, piece, fresh);
  std::copy_n(data(), size_ - piece, fresh + piece);
  if (isOutside()) delete[] outside_;
  if (capacity > 1) {
    outside_ = fresh;
  } else {
    inside_ = only;
  }
  first_ = 0;
  gap_ = size_;
  capacity_ = std::max(capacity, 1u);
}

void ChildArrayC::resize(std::size_t size) {
  if (size > size_) {
    insertSlots(size_, size - size_);
  } else {
    erase(size, size_ - size);
  }
}

void ChildArrayC::insertSlots(std::size_t i, std::size_t count) {
  if (count == 0) return;
  auto const added = static_cast<std::uint32_t>(count);
  auto const at = static_cast<std::uint32_t>(i);
  // The room that is made is as large as the slots in use, so that growth takes amortised constant time; what
  // is put into an empty array fills it exactly.
  if (room() < added) {
    reallocate(size_ > 0 && added > size_ ? 2 * (size_ + added) : size_ + std::max(added, size_));
  }
  moveGap(at > 0 ? at : size_);
  if (at == 0) first_ = static_cast<std::uint32_t>(wrap(first_ + capacity_ - added));
  gap_ += added;
  size_ += added;
  for (std::size_t k = i; k < i + count; ++k) (*this)[k] = nullptr;
}

void ChildArrayC::erase(std::size_t i, std::size_t count) {
  if (count == 0) return;
  auto const at = static_cast<std::uint32_t>(i);
  auto const end = static_cast<std::uint32_t>(i + count);
  // The gap is moved to the removed slots, which become part of it.
  if (gap_ < at || gap_ > end) moveGap(end == size_ || (at > 0 && gap_ > end) ? end : at);
  gap_ = at;
  size_ -= end - at;
  if (size_ == 0) clear();
}

void ChildArrayC::straighten() {
  moveGap(size_);
  if (first_ + size_ > capacity_) reallocate(capacity_);
}

void ChildArrayC::insertInRuns(std::size_t run, std::size_t i, std::size_t count) {
  std::size_t const before = size_;
  std::size_t const runs = before / run;
  insertSlots(before, runs * count);
  straighten();
  Node4C** const all = data() + first_;
  for (std::size_t k = runs; k-- > 0;) {
    Node4C** const from = all + k * run;
    Node4C** const to = all + k * (run + count);
    std::copy_backward(from + i, from + run, to + run + count);
    std::copy_backward(from, from + i, to + i);
    std::fill_n(to + i, count, nullptr);
  }
}

void ChildArrayC::eraseInRuns(std::size_t run, std::size_t i, std::size_t count) {
  std::size_t const runs = size_ / run;
  straighten();
  Node4C** const all = data() + first_;
  for (std::size_t k = 0; k < runs; ++k) {
    Node4C** const from = all + k * run;
    Node4C** const to = all + k * (run - count);
    std::copy(from, from + i, to);
    std::copy(from + i + count, from + run, to + i);
  }
  erase(runs * (run - count), runs * count);
}

}  // namespace zolt::math::ved
