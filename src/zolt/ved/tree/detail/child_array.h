// Internal to Node4C: the container of its children.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zolt::math::ved {

class Node4C;

/// An array of child pointers with spare room in front and in a gap. The gap stays where slots were last
/// inserted or removed, so that edits near each other move few pointers, however long the row is. Rows grow
/// at both ends in amortised constant time. A single child needs no allocation, since most rows hold one
/// text. The array neither owns nor reads the nodes.
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
  Node4C*& operator[](std::size_t i) { return data()[place(i)]; }
  Node4C* operator[](std::size_t i) const { return data()[place(i)]; }

  /// The iterator for loops over all children.
  class IteratorC {
   public:
    IteratorC(ChildArrayC const& array, Node4C* const* slot)
        : slot_(slot), gap_(array.data() + array.first_ + array.gap_), room_(array.room()) {
      if (slot_ == gap_) slot_ += room_;
    }
    Node4C* operator*() const { return *slot_; }
    IteratorC& operator++() {
      if (++slot_ == gap_) slot_ += room_;
      return *this;
    }
    bool operator!=(IteratorC const& other) const { return slot_ != other.slot_; }

   private:
    Node4C* const* slot_;
    Node4C* const* gap_;
    std::size_t room_;
  };
  IteratorC begin() const { return {*this, data() + first_}; }
  IteratorC end() const { return {*this, data() + capacity_}; }

  /// Adds or removes slots at the end; new slots are null.
  void resize(std::size_t size);
  /// Inserts `count` null slots before slot i.
  void insertSlots(std::size_t i, std::size_t count);
  /// Removes `count` slots from slot i on.
  void erase(std::size_t i, std::size_t count = 1);
  void clear() { first_ = gap_ = size_ = 0; }
  /// Frees spare room when it is larger than the slots in use.
  void shrink();
  std::size_t capacity() const { return capacity_; }

 private:
  bool isOutside() const { return capacity_ > 1; }
  Node4C** data() { return isOutside() ? outside_ : &inside_; }
  Node4C* const* data() const { return isOutside() ? outside_ : &inside_; }
  std::uint32_t room() const { return capacity_ - first_ - size_; }
  std::size_t place(std::size_t i) const { return first_ + (i < gap_ ? i : i + room()); }
  void moveGap(std::uint32_t to);
  void reallocate(std::uint32_t first, std::uint32_t room);

  union {
    Node4C* inside_ = nullptr;  // the only slot while nothing is allocated
    Node4C** outside_;
  };
  std::uint32_t first_ = 0;
  std::uint32_t gap_ = 0;  // the number of slots before the gap
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 1;
};

}  // namespace zolt::math::ved
