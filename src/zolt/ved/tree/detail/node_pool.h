// Internal to Node4C: where nodes live.
#pragma once

namespace zolt::math::ved {

/// Memory for nodes, cut from blocks so that a tree is read in the order in which it was built, which a large
/// one cannot do without: scattered over the heap it would wait for memory at every node. When the last node
/// goes, the blocks go too. Like everything in the component it belongs to one thread at a time.
class NodePoolC {
 public:
  /// Memory for one `Node4C`.
  static void* allocate();
  static void release(void* node);
};

}  // namespace zolt::math::ved
