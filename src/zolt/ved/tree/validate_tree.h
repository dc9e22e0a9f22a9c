#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

using oss::wstring;

class Node4C;

/// The invariants of a normalised tree, numbered as in docs/invariants.md, and those of the incremental state
/// of its nodes, S1 to S5 of docs/incremental.md.
enum TreeInvariantE {
  TREE_VALID = 0,
  TREE_ROOT_HOLDS_ONE_ROW = 1,
  TREE_PARENTS_MATCH = 2,
  TREE_ROW_ITEM_KINDS = 3,
  TREE_OPERATOR_HOLDS_ITS_ROWS = 4,
  TREE_POWER_HOLDS_ONE_ROW = 5,
  TREE_LEAVES_HAVE_NO_CHILDREN = 6,
  TREE_TEXTS_ALTERNATE = 7,
  TREE_BRACKETS_BALANCE = 8,
  TREE_AUTO_BRACKETS_AT_ENDS = 9,
  TREE_NESTING_WITHIN_LIMIT = 10,
  TREE_PLACE_IN_TEXT = 11,
  TREE_MARKS_GO_UP = 101,
  TREE_STRETCHES_HOLD_THE_ROW = 102,
  TREE_BRACKET_SUMS = 103,
  TREE_STRETCHES_FOLLOW = 104,
  TREE_RECORDS_MATCH = 105,
};

/// The first invariant that a tree breaks.
struct TreeFaultS {
  TreeInvariantE invariant = TREE_VALID;
  Node4C const* node = nullptr;  ///< the node that breaks it
};

/// Checks invariants 1 to 10 and S1 to S5 over a whole tree and returns the first fault in reading order.
/// Takes linear time and does not recurse.
TreeFaultS validateTree(Node4C const& root);

/// Checks invariants 2 to 6 for one node: what it holds, in canonical form or not.
TreeInvariantE validateShape(Node4C const& node);

/// Checks invariant 11: the place is in a text of the tree `root`.
TreeFaultS validatePlace(Node4C const& root, PlaceS place);
/// Checks invariant 11 for the caret and, unless it is no place, for the anchor.
TreeFaultS validateSelection(Node4C const& root, SelectionS const& selection);

/// What an invariant requires, in one line of English.
wstring describeInvariant(TreeInvariantE invariant);

}  // namespace zolt::math::ved
