// Internal to Node4C: the container of its children.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zolt::math::ved {

class Node4C;

/// Contiguous array of child pointers with spare room at both ends, so that a row grows at either end in
/// amortised constant time. One child needs no memory of its own: most rows hold a single text. The array
/// neither owns nor reads the nodes.
class ChildArrayC {
 public:
  ChildArrayC() = default;
  ~ChildArrayC() {
    if (isOutside()) delete[] outside_;
  }
  ChildArrayC(ChildArrayC const&) = delete;
  ChildArrayC& operator=(ChildArrayC const&) = delete;

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  Node4C*& operator[](std::size_t i) { return begin()[i]; }
  Node4C* operator[](std::size_t i) const { return begin()[i]; }
  Node4C** begin() { return (isOutside() ? outside_ : &inside_) + first_; }
  Node4C** end() { return begin() + size_; }
  Node4C* const* begin() const { return (isOutside() ? outside_ : &inside_) + first_; }
  Node4C* const* end() const { return begin() + size_; }

  /// Fills up with, or drops, slots at the end; new slots are null.
  void resize(std::size_t size);
  /// Opens `count` null slots before slot i, moving the shorter side.
  void insertSlots(std::size_t i, std::size_t count);
  /// Removes `count` slots from slot i on, moving the shorter side.
  void erase(std::size_t i, std::size_t count = 1);
  void clear() { first_ = size_ = 0; }
  /// Gives spare room back when it is more than the slots in use.
  void shrink();
  std::size_t capacity() const { return capacity_; }

 private:
  bool isOutside() const { return capacity_ > 1; }
  void reallocate(std::uint32_t capacity, std::uint32_t first);

  union {
    Node4C* inside_ = nullptr;  // the one slot there is room for without memory of its own
    Node4C** outside_;
  };
  std::uint32_t first_ = 0;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 1;
};

}  // namespace zolt::math::ved
