// Internal to Node4C: bringing a row into canonical form.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

/// Brings one row into canonical form and marks the stretches that must be laid out. It examines only the
/// items of marked stretches and rebuilds only stretches that are not in order; a short row is one stretch.
/// The time is linear in the items examined, whatever has to be repaired.
class RowNormaliserC {
 public:
  /// `places` stay at their characters when the texts that hold them are merged into others.
  RowNormaliserC(Node4C& row, SelectionS& places)
      : row_(row), places_(places), stretches_(row.state_.index.get(), row.numChildren()) {}

  void normalise();

 private:
  using NodeT = std::unique_ptr<Node4C>;

  bool examine(RowStretchS& stretch);
  void flatten(std::size_t i);
  BracketSumS addUp();
  void promoteOvertaken(Node4TypeE type);
  void markDirty(std::size_t k);
  void markEnd(long missing, Node4TypeE type);
  bool isWellCut(std::size_t k);
  bool isTooShort(std::size_t k);
  bool mayStayApart(std::size_t k);
  bool mayStart(std::size_t first, std::size_t count) const;
  void rebuild(std::size_t first, std::size_t end);
  void append(NodeT item);
  void merge(Node4C& text, Node4C const& next);
  void cut(RowIndexC& index, std::size_t k, std::size_t count, std::size_t first, std::size_t items);

  Node4C& row_;
  SelectionS& places_;
  RowStretchesC stretches_;
  std::vector<bool> dirty_;  // the stretches to be rebuilt; empty when there are none
  // Supplied brackets to be added to the two ends of the row; below 0, to be taken away.
  long missingOpens_ = 0;
  long missingCloses_ = 0;
  // A node is either here or in the row. When memory runs out these nodes are destroyed and the row lacks
  // them.
  std::vector<NodeT> items_;
};

}  // namespace zolt::math::ved
