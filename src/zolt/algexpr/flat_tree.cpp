#include "zolt/algexpr/flat_tree.h"

namespace zolt::math::algexpr {

bool FlatTreeC::fill(NodeABC const& root) {
  struct OpenS {
    ParentNodeABC const* node;
    unsigned long next;
    std::uint32_t entry;
  };
  std::vector<OpenS> open;
  entries_.clear();
  for (NodeABC const* node = &root;;) {
    if (entries_.size() == max_nodes) return false;
    auto const entry = static_cast<std::uint32_t>(entries_.size());
    entries_.push_back({node, entry + 1});
    if (ParentNodeABC const* const parent = node->asParent()) open.push_back({parent, 0, entry});
    while (!open.empty() && open.back().next == open.back().node->numChildren()) {
      entries_[open.back().entry].end = static_cast<std::uint32_t>(entries_.size());
      open.pop_back();
    }
    if (open.empty()) return true;
    node = &open.back().node->child(open.back().next++);
  }
}

}  // namespace zolt::math::algexpr
