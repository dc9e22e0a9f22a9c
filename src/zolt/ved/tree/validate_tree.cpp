#include "zolt/ved/tree/validate_tree.h"

#include <vector>

#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

namespace {

TreeInvariantE checkRow(Node4C const& row) {
  unsigned long const count = row.numChildren();
  if (count % 2 == 0) return TREE_TEXTS_ALTERNATE;
  unsigned long autoOpen = 0;
  unsigned long autoClose = 0;
  long depth = 0;
  long lowest = 0;
  bool content = false;  // something other than an empty text or a supplied opening bracket was seen
  for (unsigned long i = 0; i < count; ++i) {
    Node4C const& item = *row.child(i);
    bool const text = item.getType() == NODE4_TEXT;
    if (text != (i % 2 == 0)) return TREE_TEXTS_ALTERNATE;
    switch (item.getType()) {
      case NODE4_AUTO_OPEN:
        if (content || autoClose > 0) return TREE_AUTO_BRACKETS_AT_ENDS;
        ++autoOpen;
        break;
      case NODE4_AUTO_CLOSE:
        ++autoClose;
        break;
      default:
        if (text && item.crefText().empty()) break;
        if (autoClose > 0) return TREE_AUTO_BRACKETS_AT_ENDS;
        content = true;
        if (item.getType() == NODE4_OPEN) ++depth;
        if (item.getType() == NODE4_CLOSE && --depth < lowest) lowest = depth;
    }
  }
  // There must be exactly one supplied bracket for each typed bracket without a partner.
  if (autoOpen != static_cast<unsigned long>(-lowest)) return TREE_BRACKETS_BALANCE;
  return autoClose == static_cast<unsigned long>(depth - lowest) ? TREE_VALID : TREE_BRACKETS_BALANCE;
}

TreeInvariantE checkConstruct(Node4C const& node) {
  OperatorBC const* op = node.crefOperator();
  if (!op || op->isLinear() || node.crefText() != op->getName()) return TREE_OPERATOR_HOLDS_ITS_ROWS;
  if (op->getArity() != 0 && op->getArity() != node.numChildren()) return TREE_OPERATOR_HOLDS_ITS_ROWS;
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (node.child(i)->getType() != NODE4_LINE) return TREE_OPERATOR_HOLDS_ITS_ROWS;
  }
  return TREE_VALID;
}

TreeInvariantE checkNode(Node4C const& node, unsigned long rows) {
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (!node.child(i) || node.child(i)->getParent() != &node) return TREE_PARENTS_MATCH;
  }
  if (node.getType() != NODE4_OPERATOR && node.crefOperator()) return TREE_OPERATOR_HOLDS_ITS_ROWS;
  switch (node.getType()) {
    case NODE4_ROOT:
      if (node.getParent() || node.numChildren() != 1 || node.child(0)->getType() != NODE4_LINE) {
        return TREE_ROOT_HOLDS_ONE_ROW;
      }
      return TREE_VALID;
    case NODE4_LINE:
      for (unsigned long i = 0; i < node.numChildren(); ++i) {
        Node4TypeE const type = node.child(i)->getType();
        if (type < NODE4_TEXT || type > NODE4_AUTO_CLOSE) return TREE_ROW_ITEM_KINDS;
      }
      if (rows > limits::max_nested_rows) return TREE_NESTING_WITHIN_LIMIT;
      return checkRow(node);
    case NODE4_OPERATOR:
      return checkConstruct(node);
    case NODE4_POWER:
      return node.numChildren() == 1 && node.child(0)->getType() == NODE4_LINE ? TREE_VALID
                                                                               : TREE_POWER_HOLDS_ONE_ROW;
    default:
      return node.numChildren() == 0 ? TREE_VALID : TREE_LEAVES_HAVE_NO_CHILDREN;
  }
}

/// Checks the stretches of a long row.
TreeInvariantE checkStretches(Node4C const& row, RowIndexC const& index) {
  std::size_t first = 0;
  long x = 0;
  for (std::size_t k = 0; k < index.size(); ++k) {
    RowStretchS const& stretch = index[k];
    if (stretch.first != first || first + stretch.count > row.numChildren())
      return TREE_STRETCHES_HOLD_THE_ROW;
    BracketSumS brackets;
    for (std::size_t end = first + stretch.count; first < end; ++first) {
      Node4C const& item = *row.child(first);
      if (item.crefState().stretch != &stretch) return TREE_STRETCHES_HOLD_THE_ROW;
      if (!item.isEmptyText()) brackets.add(item.getType());
    }
    if (!(stretch.stale & STALE_CHECK) && stretch.brackets != brackets) return TREE_BRACKET_SUMS;
    bool const isPlaced = stretch.dx == x && stretch.dy == row.getMidHeight();
    if (!(row.crefState().stale & STALE_LAYOUT) && !isPlaced) return TREE_STRETCHES_FOLLOW;
    x += stretch.sum.width;
  }
  return first == row.numChildren() ? TREE_VALID : TREE_STRETCHES_HOLD_THE_ROW;
}

TreeInvariantE checkRecord(Node4C const& node) {
  NodeRecordC const* const record = node.crefState().record.get();
  if (!record || record->getKind() != node.getType() || record->getOperator().get() != node.crefOperator()) {
    return TREE_RECORDS_MATCH;
  }
  if (node.getType() == NODE4_TEXT) {
    return record->getText() == node.crefText() ? TREE_VALID : TREE_RECORDS_MATCH;
  }
  std::vector<NodeRecordC const*> items;
  record->appendItems(items);
  if (items.size() != node.numChildren()) return TREE_RECORDS_MATCH;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i] != node.child(i)->crefState().record.get()) return TREE_RECORDS_MATCH;
  }
  return TREE_VALID;
}

/// Checks the incremental state of a node.
TreeInvariantE checkState(Node4C const& node) {
  NodeStateS const& state = node.crefState();
  unsigned above = node.getParent() ? node.getParent()->crefState().stale : ~0u;
  if (state.stretch) above &= state.stretch->stale;
  if (state.stale & ~above) return TREE_MARKS_GO_UP;
  bool const inLongRow = node.getParent() && node.getParent()->crefState().index;
  if (inLongRow != (state.stretch != nullptr)) return TREE_STRETCHES_HOLD_THE_ROW;
  if (state.index) {
    TreeInvariantE const broken = checkStretches(node, *state.index);
    if (broken != TREE_VALID) return broken;
  }
  return state.stale & STALE_RECORD ? TREE_VALID : checkRecord(node);
}

}  // namespace

TreeFaultS validateTree(Node4C const& root) {
  if (root.getType() != NODE4_ROOT) return {TREE_ROOT_HOLDS_ONE_ROW, &root};
  TreeFaultS fault;
  unsigned long rows = 0;
  auto const enter = [&](Node4C const& node) {
    if (node.getType() == NODE4_LINE) ++rows;
    TreeInvariantE broken = checkNode(node, rows);
    if (broken == TREE_VALID) broken = checkState(node);
    if (broken == TREE_VALID) return WALK_INTO;
    fault = {broken, &node};
    return WALK_STOP;
  };
  auto const leave = [&](Node4C const& node) {
    if (node.getType() == NODE4_LINE) --rows;
  };
  walkTree(root, enter, leave);
  return fault;
}

TreeFaultS validatePlace(Node4C const& root, PlaceS place) {
  Node4C const* top = place.node;
  bool const inText = top && top->getType() == NODE4_TEXT && place.pos <= top->sizeText();
  while (top && top->getParent()) top = top->getParent();
  if (!inText || top != &root) return {TREE_PLACE_IN_TEXT, place.node};
  return {};
}

TreeFaultS validateSelection(Node4C const& root, SelectionS const& selection) {
  TreeFaultS const fault = validatePlace(root, selection.caret);
  return fault.invariant != TREE_VALID || !selection.anchor ? fault : validatePlace(root, selection.anchor);
}

wstring describeInvariant(TreeInvariantE invariant) {
  switch (invariant) {
    case TREE_VALID:
      return u"the tree is valid";
    case TREE_ROOT_HOLDS_ONE_ROW:
      return u"the root has no parent and holds exactly one row";
    case TREE_PARENTS_MATCH:
      return u"no child slot is empty and every child names its parent";
    case TREE_ROW_ITEM_KINDS:
      return u"a row holds only texts, constructs, exponents and brackets";
    case TREE_OPERATOR_HOLDS_ITS_ROWS:
      return u"a construct, and nothing else, has an operator, its name, and as many rows as its arity";
    case TREE_POWER_HOLDS_ONE_ROW:
      return u"an exponent holds exactly one row";
    case TREE_LEAVES_HAVE_NO_CHILDREN:
      return u"texts and brackets have no children";
    case TREE_TEXTS_ALTERNATE:
      return u"texts and other items alternate in a row, with a text at both ends";
    case TREE_BRACKETS_BALANCE:
      return u"brackets balance in each row, with exactly as many supplied ones as it takes";
    case TREE_AUTO_BRACKETS_AT_ENDS:
      return u"nothing but empty texts stands outside a supplied bracket";
    case TREE_NESTING_WITHIN_LIMIT:
      return u"rows nest no deeper than the limit";
    case TREE_PLACE_IN_TEXT:
      return u"the caret and the anchor are places in texts of the tree";
    case TREE_MARKS_GO_UP:
      return u"S1: the marks of a node are on its parent and on its stretch";
    case TREE_STRETCHES_HOLD_THE_ROW:
      return u"S2: the stretches of a row follow one another and hold its items, which name them";
    case TREE_BRACKET_SUMS:
      return u"S3: an unmarked stretch knows its brackets";
    case TREE_STRETCHES_FOLLOW:
      return u"S4: in a row that is laid out, each stretch starts where the one before it ends";
    case TREE_RECORDS_MATCH:
      return u"S5: the record of an unmarked node is a copy of it";
  }
  return wstring();
}

}  // namespace zolt::math::ved
