#include "bench/allocations.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace {

long bytesInUse = 0;
long allocations = 0;

void* allocate(std::size_t size) {
  void* const block = std::malloc(size);
  if (!block) std::abort();
  bytesInUse += static_cast<long>(malloc_usable_size(block)) + static_cast<long>(sizeof(std::size_t));
  ++allocations;
  return block;
}

void release(void* block) {
  if (!block) return;
  bytesInUse -= static_cast<long>(malloc_usable_size(block)) + static_cast<long>(sizeof(std::size_t));
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }

namespace zolt::bench {

long heapBytesInUse() { return bytesInUse; }
long heapAllocations() { return allocations; }

}  // namespace zolt::bench
