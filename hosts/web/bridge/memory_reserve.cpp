#include "hosts/web/bridge/memory_reserve.h"

#ifdef __EMSCRIPTEN__

#include <cstdlib>
#include <new>

namespace {

/// Enough for a key or a frame in a formula of any size, and for taking the key back.
constexpr std::size_t reserve_size = 1 << 20;

void* reserve = nullptr;

}  // namespace

void* operator new(std::size_t size) {
  for (;;) {
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
    if (!reserve) __builtin_trap();
    std::free(reserve);
    reserve = nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }

namespace zolt::web {

bool renewReserve() {
  if (!reserve) reserve = std::malloc(reserve_size);
  return reserve;
}
bool hasRoom(std::size_t bytes) {
  // So little the reserve has.
  if (bytes <= reserve_size / 2) return true;
  // Through a volatile pointer, or compilers leave out both calls and say yes.
  void* volatile room = std::malloc(bytes);
  bool const has = room;
  std::free(room);
  return has;
}
bool isShort() { return !reserve; }

}  // namespace zolt::web

#else

namespace zolt::web {

bool renewReserve() { return true; }
bool hasRoom(std::size_t) { return true; }
bool isShort() { return false; }

}  // namespace zolt::web

#endif
