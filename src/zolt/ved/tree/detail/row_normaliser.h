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

  /// The supplied brackets that are added and removed at the two ends of the row.
  struct SuppliedS {
    std::uint32_t missingOpens = 0;
    std::uint32_t missingCloses = 0;
    std::uint32_t surplusOpens = 0;
    std::uint32_t surplusCloses = 0;
  };

  bool repair();
  void flatten(RowStretchS& stretch);
  void openSlots(RowStretchS& stretch, std::size_t i, std::size_t count);
  void closeSlot(RowStretchS& stretch, std::size_t i);
  void count(RowStretchS& stretch);
  BracketSumS countAll();
  void promoteOvertaken(Node4TypeE type);
  bool findDirty();
  bool isInOrder(std::size_t k);
  bool isTooShort(RowStretchS const& stretch) const;
  bool mayStart(std::size_t first, std::size_t count) const;
  void rebuild(std::size_t first, std::size_t end);
  void append(NodeT item);
  void merge(Node4C& text, Node4C const& next);
  void keepStretches();
  void enterStretches(std::size_t k, std::size_t count, std::size_t first, std::size_t items);

  Node4C& row_;
  SelectionS& places_;
  RowStretchesC stretches_;
  SuppliedS supplied_;
  std::vector<bool> dirty_;  // the stretches to be rebuilt
  // A node is either here or in the row. When memory runs out these nodes are destroyed and the row lacks
  // them.
  std::vector<NodeT> items_;
};

}  // namespace zolt::math::ved
