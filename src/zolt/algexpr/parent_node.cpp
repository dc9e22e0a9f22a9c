#include "zolt/algexpr/parent_node.h"

#include <algorithm>

#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

ParentNodeABC::ParentNodeABC(PointerTC<NodeABC>* first, unsigned long count)
    : count_(static_cast<std::uint32_t>(count)),
      few_{},
      many_(count > inline_count ? new NodeABC*[count] : nullptr) {
  std::transform(first, first + count, pointers(), [](PointerTC<NodeABC>& child) { return child.detach(); });
}

// Nodes that lost their last holder and still have children to let go of form a chain through their slot 0,
// whose own child has been let go of first. The other children go from the last slot down, and a node whose
// count has reached 0 has nothing left to do here. This node is the end of the chain.
ParentNodeABC::~ParentNodeABC() {
  if (count_ == 0) return;
  NodeABC* chain = nullptr;
  NodeABC* dying = this;
  for (;;) {
    NodeABC* orphan = nullptr;
    ParentNodeABC* parent = dying ? dying->asParent() : nullptr;
    if (parent) {
      orphan = parent->pointers()[0];
      parent->pointers()[0] = chain;
      chain = parent;
    } else {
      delete dying;
      if (!chain) return;
      parent = chain->asParent();
      if (parent->count_ > 1) {
        orphan = parent->pointers()[--parent->count_];
      } else {
        chain = parent->pointers()[0];
        parent->count_ = 0;
        if (parent != this) delete parent;
      }
    }
    dying = orphan && orphan->dereference() == 0 ? orphan : nullptr;
  }
}

char16_t const* ParentNodeABC::getCastableId() { return u"ParentNodeABC"; }

NodeABC const* ParentNodeABC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, ParentNodeABC::getCastableId()) ? this : NodeABC::lookUpBase(id);
}

}  // namespace zolt::math::algexpr
