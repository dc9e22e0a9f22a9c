#pragma once

#include <cstddef>

namespace zolt::tests {

/// What this program has asked of the heap since the last `reset`.
struct AllocationsS {
  std::size_t count = 0;
  std::size_t bytes = 0;
  std::size_t largest = 0;

  static AllocationsS const& get();
  static void reset();
};

}  // namespace zolt::tests
