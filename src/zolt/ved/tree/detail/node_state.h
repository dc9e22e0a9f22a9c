// Internal to Node4C: what a node keeps so that a pass repeats only the work that an edit requires.
#pragma once

#include <cstdint>
#include <memory>

#include "zolt/ved/tree/detail/row_index.h"
#include "zolt/ved/tree/node_record.h"

namespace zolt::math::ved {

/// The incremental state of a node; docs/incremental.md explains it and numbers its invariants.
struct NodeStateS {
  NodeStateS() : laidOutAsSlot(false), composed(false), overflows(false), reach(0) {}

  RowStretchS* stretch = nullptr;      // the stretch that holds the node, if its row is long
  std::unique_ptr<RowIndexC> index;    // not null in a long row
  mutable NodeRecordPointerC record;   // valid unless STALE_RECORD is set
  mutable std::uint32_t slotHint = 0;  // the last known number in its stretch or its parent's list
  std::uint16_t laidOutDepth = 0;      // the font depth of the last layout
  bool laidOutAsSlot : 1;              // whether the last layout measured the placeholder
  bool composed : 1;                   // whether the last layout measured composed text in it
  bool overflows : 1;                  // whether something inside may extend above or below the node's box
  mutable std::uint8_t reach : 5;      // how far texts reach out of the node's box, as node4_reach.cpp counts
  mutable std::uint8_t stale = STALE_ALL;
};

}  // namespace zolt::math::ved
