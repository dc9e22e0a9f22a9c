#pragma once

#include <atomic>

#include "zolt/oss/live_count.h"

namespace zolt::oss {

/// Base of every shared object. The count lives in the object and starts at 0; `PointerTC` keeps it.
///
/// The count is atomic: holders on several threads may share an object. What else the object may do on
/// several threads at once is its own promise; those that never change, such as operators and expressions,
/// need no other.
/// Copying an object copies its count too, as a member-by-member copy does. A copy made on the heap and
/// given to a `PointerTC` therefore outlives its holders unless the original's count was 0; copy shared
/// objects only as values.
class RefCountedBC : private LiveCountTC<RefCountedBC> {
 public:
  RefCountedBC() = default;
  RefCountedBC(RefCountedBC const& other) : LiveCountTC(other), count_(other.get()) {}
  RefCountedBC& operator=(RefCountedBC const& other) {
    count_.store(other.get(), std::memory_order_relaxed);
    return *this;
  }
  virtual ~RefCountedBC() = default;

  /// Adds one holder.
  void reference() const {
    // Nobody else knows an object that has no holder yet; most objects are made and gone without a second.
    if (get() == 0) {
      count_.store(1, std::memory_order_relaxed);
    } else {
      count_.fetch_add(1, std::memory_order_relaxed);
    }
  }

  /// Removes one holder and returns how many remain. Never destroys: whoever removes the last one does.
  unsigned long dereference() const {
    // The only holder is alone with the object, and sees what all others did before they let go.
    if (count_.load(std::memory_order_acquire) != 1) {
      return count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    }
    count_.store(0, std::memory_order_relaxed);
    return 0;
  }

  /// True when more than one holder shares the object.
  bool isShared() const { return get() > 1; }

 private:
  unsigned long get() const { return count_.load(std::memory_order_relaxed); }

  mutable std::atomic<unsigned long> count_ = 0;
};

}  // namespace zolt::oss
