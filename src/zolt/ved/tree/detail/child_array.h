// Internal to Node4C: the container of its children.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zolt::math::ved {

class Node4C;

/// An array of child pointers in a ring with one gap. The gap stays where slots were last inserted or
/// removed, so that edits near each other move few pointers, however long the row is. The two ends of the
/// array are one place of the ring: while the gap is there, rows grow at both ends, in any order, in
/// amortised constant time. A single child needs no allocation, since most rows hold one text. The array
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
  Node4C*& operator[](std::size_t i) { return data()[place(i)]; }
  Node4C* operator[](std::size_t i) const { return data()[place(i)]; }

  /// The iterator for loops over all children.
  class IteratorC {
   public:
    IteratorC(ChildArrayC const& array, std::size_t i) : array_(array), i_(i) {}
    Node4C* operator*() const { return array_[i_]; }
    IteratorC& operator++() {
      ++i_;
      return *this;
    }
    bool operator!=(IteratorC const& other) const { return i_ != other.i_; }

   private:
    ChildArrayC const& array_;
    std::size_t i_;
  };
  IteratorC begin() const { return {*this, 0}; }
  IteratorC end() const { return {*this, size_}; }

  /// Adds or removes slots at the end; new slots are null.
  void resize(std::size_t size);
  /// Inserts `count` null slots before slot i.
  void insertSlots(std::size_t i, std::size_t count);
  /// Removes `count` slots from slot i on.
  void erase(std::size_t i, std::size_t count = 1);
  /// Brings all slots into one piece of memory. May allocate, and then what follows does not.
  void straighten();
  /// The same as `insertSlots` and `erase` in each run of so many slots.
  void insertInRuns(std::size_t run, std::size_t i, std::size_t count);
  void eraseInRuns(std::size_t run, std::size_t i, std::size_t count);
  void clear() { first_ = gap_ = size_ = 0; }
  /// Frees spare room when it is larger than the slots in use.
  void shrink() {
    if (capacity_ > 2 * size_) reallocate(size_);
  }
  std::size_t capacity() const { return capacity_; }

 private:
  bool isOutside() const { return capacity_ > 1; }
  Node4C** data() { return isOutside() ? outside_ : &inside_; }
  Node4C* const* data() const { return isOutside() ? outside_ : &inside_; }
  std::uint32_t room() const { return capacity_ - size_; }
  std::size_t wrap(std::size_t at) const { return at < capacity_ ? at : at - capacity_; }
  std::size_t place(std::size_t i) const { return wrap(first_ + (i < gap_ ? i : i + room())); }
  void moveGap(std::uint32_t to);
  void slideGap(std::uint32_t to);
  void reallocate(std::uint32_t capacity);

  union {
    Node4C* inside_ = nullptr;  // the only slot while nothing is allocated
    Node4C** outside_;
  };
  std::uint32_t first_ = 0;  // where the array begins in the ring, with slot 0 or with the gap
  std::uint32_t gap_ = 0;    // the number of slots before the gap
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 1;
};

}  // namespace zolt::math::ved
