#include "tests/support/allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZOLT_HEAP_IS_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZOLT_HEAP_IS_CHECKED 1
#endif
#endif

namespace zolt::tests {

namespace {

AllocationsS allocations;

void note(std::size_t size) {
  ++allocations.count;
  allocations.bytes += size;
  allocations.largest = std::max(allocations.largest, size);
}

}  // namespace

AllocationsS const& AllocationsS::get() { return allocations; }
void AllocationsS::reset() { allocations = AllocationsS(); }

}  // namespace zolt::tests

#ifdef ZOLT_HEAP_IS_CHECKED

// The sanitizer checks more with operators of its own than it could with ours. Its header for this comes with
// Clang only, the function with GCC too.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onAllocate)(void const volatile*,
                                                                            std::size_t),
                                                         void (*onFree)(void const volatile*));

namespace zolt::tests {

namespace {

int const installed = __sanitizer_install_malloc_and_free_hooks(
    [](void const volatile*, std::size_t size) { note(size); }, [](void const volatile*) {});

}  // namespace

}  // namespace zolt::tests

#else

void* operator new(std::size_t size) {
  zolt::tests::note(size);
  if (void* const memory = std::malloc(size > 0 ? size : 1)) return memory;
  std::abort();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

#endif
