#pragma once

#include "zolt/oss/live_count.h"

namespace zolt::oss {

/// Base of every shared object. The count lives in the object and starts at 0; `PointerTC` keeps it.
///
/// The count is not atomic: objects are shared within one thread, the host's user-interface thread.
/// Copying an object copies its count too, as a member-by-member copy does. A copy made on the heap and
/// given to a `PointerTC` therefore outlives its holders unless the original's count was 0; copy shared
/// objects only as values.
class RefCountedBC : private LiveCountTC<RefCountedBC> {
 public:
  RefCountedBC() = default;
  RefCountedBC(RefCountedBC const&) = default;
  RefCountedBC& operator=(RefCountedBC const&) = default;
  virtual ~RefCountedBC() = default;

  /// Adds one holder.
  void reference() const { ++count_; }

  /// Removes one holder and returns how many remain. Never destroys: whoever removes the last one does.
  unsigned long dereference() const { return --count_; }

  /// True when more than one holder shares the object.
  bool isShared() const { return count_ > 1; }

 private:
  mutable unsigned long count_ = 0;
};

}  // namespace zolt::oss
