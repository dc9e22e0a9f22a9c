#include "zolt/ved/tree/detail/node_pool.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <mutex>
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

struct PoolS;

struct SlotS {
  PoolS* pool;
  union {
    SlotS* next;  // of a free slot, and of the first slot of a block, which links the blocks
    alignas(Node4C) unsigned char node[sizeof(Node4C)];
  };
};

constexpr unsigned long smallest_block = 32;
constexpr unsigned long largest_block = 256;

/// The blocks of one thread, which alone uses them while it runs.
struct PoolS {
  SlotS* blocks = nullptr;
  SlotS* free = nullptr;    // freed slots
  SlotS* unused = nullptr;  // the rest of the newest block
  SlotS* end = nullptr;
  unsigned long blockSize = smallest_block;
  unsigned long live = 0;
  std::atomic<SlotS*> returned = nullptr;  // freed by other threads, under the lock
  bool abandoned = false;                  // the thread has ended: everything is used under the lock
};

thread_local PoolS* ownPool = nullptr;

/// Is held where threads meet. It is never destroyed, since static objects may still hold nodes after it.
std::mutex& poolLock() {
  static auto& lock = *new std::mutex;
  return lock;
}

void addBlock(PoolS& pool) {
  auto* const block = new SlotS[pool.blockSize];
  block->next = std::exchange(pool.blocks, block);
  pool.unused = block + 1;
  pool.end = block + pool.blockSize;
  pool.blockSize = std::min(2 * pool.blockSize, largest_block);
}

void dropBlocks(PoolS& pool) {
  while (SlotS* const block = pool.blocks) {
    pool.blocks = block->next;
    delete[] block;
  }
  pool.free = pool.unused = pool.end = nullptr;
  pool.blockSize = smallest_block;
}

void put(SlotS* slot, PoolS& pool) {
  slot->next = std::exchange(pool.free, slot);
  --pool.live;
}

/// Takes back what other threads have freed. The lock is held.
void collectReturned(PoolS& pool) {
  SlotS* slot = pool.returned.exchange(nullptr, std::memory_order_relaxed);
  while (slot) put(std::exchange(slot, slot->next), pool);
}

/// The lock is held; the pool's thread has ended.
void dropIfUnused(PoolS* pool) {
  if (pool->live > 0) return;
  dropBlocks(*pool);
  delete pool;
}

/// Leaves the pool of a thread that ends to whoever destroys the last of its nodes.
struct ThreadEndS {
  ~ThreadEndS() {
    PoolS* const pool = std::exchange(ownPool, nullptr);
    std::lock_guard<std::mutex> const locked(poolLock());
    collectReturned(*pool);
    pool->abandoned = true;
    dropIfUnused(pool);
  }
};

PoolS* makePool() {
  ownPool = new PoolS;
  // Static objects may make nodes when the main thread's own objects are gone. That pool stays.
  thread_local ThreadEndS const end;
  static_cast<void>(end);
  return ownPool;
}

void releaseElsewhere(SlotS* slot) {
  std::lock_guard<std::mutex> const locked(poolLock());
  PoolS& pool = *slot->pool;
  if (!pool.abandoned) {
    slot->next = pool.returned.load(std::memory_order_relaxed);
    pool.returned.store(slot, std::memory_order_relaxed);
    return;
  }
  put(slot, pool);
  dropIfUnused(&pool);
}

}  // namespace

void* NodePoolC::allocate() {
  PoolS& pool = ownPool ? *ownPool : *makePool();
  SlotS* slot = pool.free;
  if (slot) {
    pool.free = slot->next;
  } else {
    if (pool.unused == pool.end) addBlock(pool);
    slot = pool.unused++;
    slot->pool = &pool;
  }
  ++pool.live;
  return slot->node;
}

void NodePoolC::release(void* node) {
  auto* const slot = reinterpret_cast<SlotS*>(static_cast<unsigned char*>(node) - offsetof(SlotS, node));
  PoolS& pool = *slot->pool;
  if (&pool != ownPool) return releaseElsewhere(slot);
  put(slot, pool);
  if (pool.returned.load(std::memory_order_relaxed)) {
    std::lock_guard<std::mutex> const locked(poolLock());
    collectReturned(pool);
  }
  if (pool.live == 0) dropBlocks(pool);
}

#else

void* NodePoolC::allocate() { return ::operator new(sizeof(Node4C)); }

void NodePoolC::release(void* node) { ::operator delete(node); }

#endif

}  // namespace zolt::math::ved
