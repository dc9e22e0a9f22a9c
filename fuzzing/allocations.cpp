#include "fuzzing/allocations.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace zolt::fuzz {

namespace {

constexpr std::size_t plenty = std::numeric_limits<std::size_t>::max();

AllocationsS allocations;
std::size_t blocksHeld = 0;
std::size_t bytesHeld = 0;  // since the reset; wraps below zero when older blocks are freed
std::size_t allocationsLeft = plenty;

void* allocate(std::size_t size) {
  if (allocationsLeft == 0) return nullptr;
  void* const memory = std::malloc(size > 0 ? size : 1);
  if (!memory) return nullptr;
  if (allocationsLeft != plenty) --allocationsLeft;
  ++blocksHeld;
  ++allocations.count;
  allocations.bytes += size;
  allocations.largest = std::max(allocations.largest, size);
  bytesHeld += malloc_usable_size(memory);
  if (bytesHeld <= plenty / 2) allocations.peak = std::max(allocations.peak, bytesHeld);
  return memory;
}

void release(void* memory) {
  if (!memory) return;
  --blocksHeld;
  bytesHeld -= malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

AllocationsS const& AllocationsS::get() { return allocations; }

void AllocationsS::reset() {
  allocations = AllocationsS();
  bytesHeld = 0;
}

std::size_t AllocationsS::blocks() { return blocksHeld; }

ScarceHeapC::ScarceHeapC(std::size_t count) { allocationsLeft = count; }

ScarceHeapC::~ScarceHeapC() { allocationsLeft = plenty; }

}  // namespace zolt::fuzz

// All forms are replaced, since a sanitizer has its own for each. Without exceptions a program that has no
// memory can only end.
void* operator new(std::size_t size) {
  if (void* const memory = zolt::fuzz::allocate(size)) return memory;
#ifdef __cpp_exceptions
  throw std::bad_alloc();
#else
  std::abort();
#endif
}

void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return zolt::fuzz::allocate(size); }
void operator delete(void* memory) noexcept { zolt::fuzz::release(memory); }
void operator delete[](void* memory) noexcept { zolt::fuzz::release(memory); }
void operator delete(void* memory, std::size_t) noexcept { zolt::fuzz::release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { zolt::fuzz::release(memory); }
