#include "tests/foundation/allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace zolt::tests {

namespace {
AllocationsS allocations;
}

AllocationsS const& AllocationsS::get() { return allocations; }
void AllocationsS::reset() { allocations = AllocationsS(); }

}  // namespace zolt::tests

void* operator new(std::size_t size) {
  zolt::tests::AllocationsS& seen = zolt::tests::allocations;
  ++seen.count;
  seen.bytes += size;
  seen.largest = std::max(seen.largest, size);
  if (void* const memory = std::malloc(size > 0 ? size : 1)) return memory;
  std::abort();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
