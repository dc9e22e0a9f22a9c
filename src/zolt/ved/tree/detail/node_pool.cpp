#include "zolt/ved/tree/detail/node_pool.h"

#include <memory>
#include <new>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

// A sanitizer detects misuse of a node only when each node is a separate allocation.
#if defined(__SANITIZE_ADDRESS__)
#define ZOLT_NODE_POOL 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZOLT_NODE_POOL 0
#endif
#endif
#ifndef ZOLT_NODE_POOL
#define ZOLT_NODE_POOL 1
#endif

#if ZOLT_NODE_POOL

namespace {

union SlotU {
  SlotU* next;  // while the slot is free
  alignas(Node4C) unsigned char node[sizeof(Node4C)];
};

constexpr unsigned long smallest_block = 32;
constexpr unsigned long largest_block = 256;

struct BlockS {
  BlockS* next;
  SlotU* slots;
};

// Plain data, so that nodes may still be destroyed while the thread or the process ends.
struct PoolS {
  BlockS* blocks = nullptr;
  SlotU* free = nullptr;    // freed slots
  SlotU* unused = nullptr;  // the rest of the newest block
  SlotU* end = nullptr;
  unsigned long blockSize = smallest_block;
  unsigned long live = 0;
};

thread_local PoolS pool;

void addBlock() {
  std::unique_ptr<SlotU[]> slots(new SlotU[pool.blockSize]);
  pool.blocks = new BlockS{pool.blocks, slots.get()};
  pool.unused = slots.release();
  pool.end = pool.unused + pool.blockSize;
  if (pool.blockSize < largest_block) pool.blockSize *= 2;
}

void dropBlocks() {
  while (BlockS* const block = pool.blocks) {
    pool.blocks = block->next;
    delete[] block->slots;
    delete block;
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
