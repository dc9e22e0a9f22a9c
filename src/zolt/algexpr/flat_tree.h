#pragma once

#include <cstdint>
#include <vector>

#include "zolt/algexpr/parent_node.h"

namespace zolt::math::algexpr {

/// An expression as a list of its nodes in the order of the prefix text, in which the place of every part is
/// its number. Shared parts are there once for each place.
class FlatTreeC {
 public:
  static constexpr std::size_t max_nodes = 20000000;

  /// False when it has more than `max_nodes`.
  [[nodiscard]] bool fill(NodeABC const& root);

  NodeABC const& crefNode(std::uint32_t i) const { return *entries_[i].node; }
  /// The number after the last node of a part.
  std::uint32_t end(std::uint32_t i) const { return entries_[i].end; }
  unsigned long numChildren(std::uint32_t i) const {
    auto const* const parent = entries_[i].node->asParent();
    return parent ? parent->numChildren() : 0;
  }
  std::uint32_t child(std::uint32_t i, unsigned number) const {
    std::uint32_t at = i + 1;
    while (number-- > 0) at = end(at);
    return at;
  }

 private:
  struct EntryS {
    NodeABC const* node;
    std::uint32_t end;
  };

  std::vector<EntryS> entries_;
};

}  // namespace zolt::math::algexpr
