// Internal to Node4C: where nodes live.
#pragma once

namespace zolt::math::ved {

/// Memory for nodes, cut from blocks, so that nodes are adjacent in the order in which a tree was built. A
/// large tree whose nodes are scattered over the heap would cause a cache miss at each node. Each thread has
/// its own blocks, which are freed with the last of its nodes. Nodes may be destroyed on any thread; those of
/// another one go back to it under a lock.
class NodePoolC {
 public:
  /// Memory for one `Node4C`.
  static void* allocate();
  static void release(void* node);
};

}  // namespace zolt::math::ved
