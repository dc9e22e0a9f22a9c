// Internal to Node4C: what a node keeps so that passes do again only what an edit changed.
#pragma once

#include <cstdint>
#include <memory>

#include "zolt/ved/tree/detail/row_index.h"
#include "zolt/ved/tree/node_record.h"

namespace zolt::math::ved {

/// The incremental state of a node; docs/incremental.md explains it and numbers what holds of it.
struct NodeStateS {
  RowStretchS* stretch = nullptr;      // of the long row that the node is an item of
  std::unique_ptr<RowIndexC> index;    // of a long row
  mutable NodeRecordPointerC record;   // valid without STALE_RECORD
  mutable std::uint32_t slotHint = 0;  // where the node last stood in its stretch or its parent's list
  std::uint16_t laidOutDepth = 0;      // the font depth of the last layout; never that of a deeper one
  bool laidOutAsSlot = false;          // whether the last layout measured the placeholder
  mutable std::uint8_t stale = STALE_ALL;
};

}  // namespace zolt::math::ved
