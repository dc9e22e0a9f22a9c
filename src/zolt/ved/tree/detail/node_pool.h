// Internal to Node4C: where nodes live.
#pragma once

namespace zolt::math::ved {

/// Memory for nodes, cut from blocks so that a tree is read in the order in which it was built, which a large
/// one cannot do without: scattered over the heap it would wait for memory at every node. Each
/// thread has blocks of its own, which go when the last of its nodes goes: a node must be destroyed on the
/// thread that made it.
class NodePoolC {
 public:
  /// Memory for one `Node4C`.
  static void* allocate();
  static void release(void* node);
};

}  // namespace zolt::math::ved
