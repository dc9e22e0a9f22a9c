#pragma once

#include <cstddef>

namespace zolt::fuzz {

/// What this program has asked of the heap since the last `reset`. When this is linked in, the program's
/// `operator new` counts, and fails on request.
struct AllocationsS {
  std::size_t count = 0;
  std::size_t bytes = 0;  ///< of all allocations, freed or not
  std::size_t largest = 0;
  std::size_t peak = 0;  ///< the most bytes held at a time, beyond those held at the `reset`

  static AllocationsS const& get();
  static void reset();
  /// How many blocks are held now, including those from before the reset.
  static std::size_t blocks();
};

/// During its lifetime, the heap allows so many further allocations, and then throws `std::bad_alloc`.
class ScarceHeapC {
 public:
  explicit ScarceHeapC(std::size_t allocations);
  ~ScarceHeapC();
  ScarceHeapC(ScarceHeapC const&) = delete;
  ScarceHeapC& operator=(ScarceHeapC const&) = delete;
};

}  // namespace zolt::fuzz
