#include "zolt/ved/tree/detail/child_array.h"

#include <algorithm>

namespace zolt::math::ved {

void ChildArrayC::moveGap(std::uint32_t to) {
  Node4C** const all = data() + first_;
  if (to < gap_) {
    std::copy_backward(all + to, all + gap_, all + gap_ + room());
  } else {
    std::copy(all + gap_ + room(), all + to + room(), all + gap_);
  }
  gap_ = to;
}

/// Moves the slots into memory with `first` free slots in front and `room` free slots in the gap.
void ChildArrayC::reallocate(std::uint32_t first, std::uint32_t room) {
  std::uint32_t const capacity = first + size_ + room;
  std::uint32_t const behind = size_ - gap_;
  if (capacity > 1) {
    auto** const fresh = new Node4C*[capacity];
    Node4C** const old = data();
    std::copy(old + first_, old + first_ + gap_, fresh + first);
    std::copy(old + capacity_ - behind, old + capacity_, fresh + capacity - behind);
    if (isOutside()) delete[] outside_;
    outside_ = fresh;
    first_ = first;
    capacity_ = capacity;
  } else if (isOutside()) {
    Node4C* const only = size_ > 0 ? (*this)[0] : nullptr;
    delete[] outside_;
    inside_ = only;
    first_ = 0;
    gap_ = size_;
    capacity_ = 1;
  }
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
  // Room that is used up becomes as large as the slots in use, and the other room shrinks to at most that, so
  // that growth takes amortised constant time and memory stays proportional to the slots.
  std::uint32_t const more = std::max(added, size_);
  if (at == 0 && gap_ > 0) {
    if (first_ < added) reallocate(first_ + more, std::min(room(), more));
    first_ -= added;
  } else {
    if (room() < added) reallocate(std::min(first_, more), room() + more);
    if (at != gap_) moveGap(at);
  }
  std::fill_n(data() + first_ + at, added, nullptr);
  gap_ += added;
  size_ += added;
}

void ChildArrayC::erase(std::size_t i, std::size_t count) {
  if (count == 0) return;
  auto const at = static_cast<std::uint32_t>(i);
  auto const removed = static_cast<std::uint32_t>(count);
  if (at == 0 && gap_ >= removed) {
    first_ += removed;
    gap_ -= removed;
  } else {
    // The gap is moved to the removed slots, which become part of it.
    if (gap_ < at) moveGap(at);
    if (gap_ > at + removed) moveGap(at + removed);
    gap_ = at;
  }
  size_ -= removed;
  if (size_ == 0) clear();
}

void ChildArrayC::shrink() {
  if (capacity_ > 2 * size_) reallocate(0, 0);
}

}  // namespace zolt::math::ved
