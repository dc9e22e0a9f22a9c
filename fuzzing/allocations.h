#pragma once

#include <cstddef>

namespace zolt::fuzz {

/// What this program has asked of the heap since the last `reset`. With this linked in, the program's
/// `operator new` counts, and fails when told to.
struct AllocationsS {
  std::size_t count = 0;
  std::size_t bytes = 0;  ///< of all of them, given back or not
  std::size_t largest = 0;
  std::size_t peak = 0;  ///< the most bytes held at a time, beyond those held at the `reset`

  static AllocationsS const& get();
  static void reset();
  /// How many blocks are held now, whenever they were asked for.
  static std::size_t blocks();
};

/// While it lasts, the heap has room for so many allocations more and none after them: `std::bad_alloc`.
class ScarceHeapC {
 public:
  explicit ScarceHeapC(std::size_t allocations);
  ~ScarceHeapC();
  ScarceHeapC(ScarceHeapC const&) = delete;
  ScarceHeapC& operator=(ScarceHeapC const&) = delete;
};

}  // namespace zolt::fuzz
