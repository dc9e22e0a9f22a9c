// Internal to Node4C: bringing rows into canonical form.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

/// Brings rows into canonical form. A row is done in a single pass over its items, which are collected in a
/// new order instead of being moved about in the row, so that the cost is linear whatever has to be repaired;
/// of a long row only the stretches that changed, and the row's ends where supplied brackets stand.
class RowNormaliserC {
 public:
  RowNormaliserC(Node4C*& caretNode, unsigned& caretPos, Node4C*& anchorNode, unsigned& anchorPos)
      : caretNode_(caretNode), caretPos_(caretPos), anchorNode_(anchorNode), anchorPos_(anchorPos) {}

  /// Takes the mark off the node; a row is normalised.
  void visit(Node4C& node);
  /// The node's children have been visited.
  static void leave(Node4C& node);

  /// Moves a place between a supplied bracket and the end of the row that it stands at to the inside of all
  /// such brackets. False, with the place where it was, when there is no text for it.
  static bool stepInside(Node4C const& row, Node4C*& node, unsigned& pos);

  /// A pass takes the caret away from supplied brackets wherever it has got to, so it visits their rows even
  /// when they have not changed.
  void markRowsWithAutoBrackets() {
    for (Node4C* row : autoRows_) row->touch(Node4C::STALE_BRACKETS);
  }

 private:
  using NodeT = std::unique_ptr<Node4C>;

  /// Stretches of a long row that are put together anew, from `first` up to, not including, `end`.
  struct RangeS {
    std::size_t first;
    std::size_t end;
  };
  struct BracketsS {
    unsigned long opens = 0;  // without a partner
    unsigned long closes = 0;

    void add(unsigned long moreCloses, unsigned long moreOpens) {
      unsigned long const pairs = moreCloses < opens ? moreCloses : opens;
      closes += moreCloses - pairs;
      opens += moreOpens - pairs;
    }
  };

  // ---- A whole row
  void normalise(Node4C& row);
  bool isCanonical(Node4C const& row);
  void collectItems(Node4C& row);
  void pushReversed(Node4C& node);
  void promoteAutoBrackets();
  void dropAutoBracketsAndCount();
  void rebuild(Node4C& row);

  // ---- A long row (row_normaliser_stretches.cpp)
  /// False, with nothing lost, when the row has to be done as a whole.
  bool normaliseStretches(Node4C& row);
  bool flatten(Node4C& row);
  static void dissolve(Node4C& row, unsigned long i);
  static void removeItems(Node4C& row, unsigned long first, unsigned long count);
  void promoteInStretches(Node4C& row);
  void addBrackets(RowStretchS const& stretch);
  bool matchAutoBrackets(Node4C& row);
  std::vector<std::size_t> findDirty(Node4C const& row) const;
  std::vector<RangeS> findRanges(Node4C const& row) const;
  void rebuildRange(Node4C& row, RangeS range);

  static void promote(Node4C& bracket);
  void append(NodeT item);
  void appendEnd();
  void merge(Node4C& text, Node4C const& next);
  static NodeT make(Node4TypeE type);

  Node4C*& caretNode_;
  unsigned& caretPos_;
  Node4C*& anchorNode_;
  unsigned& anchorPos_;
  // A node is in one of these or in its row. Where memory runs out they go, and the row is left with less.
  std::vector<NodeT> items_;
  std::vector<NodeT> pending_;
  std::vector<NodeT> row_;
  std::vector<Node4C*> autoRows_;
  BracketsS unmatched_;
  BracketsS supplied_;  // the brackets that stand at the start (opens) and at the end (closes) of the row
  BracketsS missing_;   // those that are still to come there
};

}  // namespace zolt::math::ved
