#include "zolt/ved/tree/detail/child_array.h"

#include <algorithm>

namespace zolt::math::ved {

void ChildArrayC::reallocate(std::uint32_t capacity, std::uint32_t first) {
  if (capacity > 1) {
    auto** const slots = new Node4C*[capacity];
    std::copy(begin(), end(), slots + first);
    if (isOutside()) delete[] outside_;
    outside_ = slots;
  } else {
    Node4C* const only = size_ > 0 ? (*this)[0] : nullptr;
    if (isOutside()) delete[] outside_;
    inside_ = only;
    first = 0;
    capacity = 1;
  }
  first_ = first;
  capacity_ = capacity;
}

void ChildArrayC::resize(std::size_t size) {
  if (size > size_) {
    insertSlots(size_, size - size_);
  } else {
    size_ = static_cast<std::uint32_t>(size);
  }
}

void ChildArrayC::insertSlots(std::size_t i, std::size_t count) {
  auto const added = static_cast<std::uint32_t>(count);
  auto const at = static_cast<std::uint32_t>(i);
  bool const front = at < size_ - at;  // fewer slots stand before the gap than behind it
  std::uint32_t const roomBehind = capacity_ - first_ - size_;
  if (front ? first_ < added : roomBehind < added) {
    // The side that grows gets as much new room as there are slots; the other side keeps its own.
    std::uint32_t const room = std::max(added, size_);
    if (front) {
      reallocate(room + size_ + roomBehind, room);
    } else {
      reallocate(first_ + size_ + room, first_);
    }
  }
  if (front) {
    std::copy(begin(), begin() + at, begin() - added);
    first_ -= added;
  } else {
    std::copy_backward(begin() + at, end(), end() + added);
  }
  size_ += added;
  std::fill_n(begin() + at, added, nullptr);
}

void ChildArrayC::erase(std::size_t i, std::size_t count) {
  auto const removed = static_cast<std::uint32_t>(count);
  if (i < size_ - i - count) {
    std::copy_backward(begin(), begin() + i, begin() + i + count);
    first_ += removed;
  } else {
    std::copy(begin() + i + count, end(), begin() + i);
  }
  size_ -= removed;
}

void ChildArrayC::shrink() {
  if (capacity_ > 2 * size_) reallocate(size_, 0);
}

}  // namespace zolt::math::ved
