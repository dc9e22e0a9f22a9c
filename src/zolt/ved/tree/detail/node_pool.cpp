#include "zolt/ved/tree/detail/node_pool.h"

#include <algorithm>
#include <new>
#include <utility>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

// A sanitizer detects misuse of a node only when each node is a separate allocation.
#if defined(__has_feature)
#define ZOLT_HAS_FEATURE(feature) __has_feature(feature)
#else
#define ZOLT_HAS_FEATURE(feature) 0
#endif

#if !defined(__SANITIZE_ADDRESS__) && !ZOLT_HAS_FEATURE(address_sanitizer)

namespace {

union SlotU {
  SlotU* next;  // of a free slot, and of the first slot of a block, which links the blocks
  alignas(Node4C) unsigned char node[sizeof(Node4C)];
};

constexpr unsigned long smallest_block = 32;
constexpr unsigned long largest_block = 256;

// Plain data, so that nodes may still be destroyed while the thread or the process ends.
struct PoolS {
  SlotU* blocks = nullptr;
  SlotU* free = nullptr;    // freed slots
  SlotU* unused = nullptr;  // the rest of the newest block
  SlotU* end = nullptr;
  unsigned long blockSize = smallest_block;
  unsigned long live = 0;
};

thread_local PoolS pool;

void addBlock() {
  auto* const block = new SlotU[pool.blockSize];
  block->next = std::exchange(pool.blocks, block);
  pool.unused = block + 1;
  pool.end = block + pool.blockSize;
  pool.blockSize = std::min(2 * pool.blockSize, largest_block);
}

void dropBlocks() {
  while (SlotU* const block = pool.blocks) {
    pool.blocks = block->next;
    delete[] block;
  }
  pool = PoolS();
}

}  // namespace

void* NodePoolC::allocate() {
  SlotU* slot = pool.free;
  if (slot) {
    pool.free = slot->next;
  } else {
    if (pool.unused == pool.end) addBlock();
    slot = pool.unused++;
  }
  ++pool.live;
  return slot;
}

void NodePoolC::release(void* node) {
  auto* const slot = static_cast<SlotU*>(node);
  slot->next = pool.free;
  pool.free = slot;
  if (--pool.live == 0) dropBlocks();
}

#else

void* NodePoolC::allocate() { return ::operator new(sizeof(Node4C)); }

void NodePoolC::release(void* node) { ::operator delete(node); }

#endif

}  // namespace zolt::math::ved
