#include "zolt/ved/tree/validate_tree.h"

#include <utility>
#include <vector>

#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

namespace {

bool holdsOnlyRows(Node4C const& node) {
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (node.child(i)->getType() != NODE4_LINE) return false;
  }
  return true;
}

bool holdsOnlyItems(Node4C const& row) {
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    Node4TypeE const type = row.child(i)->getType();
    if (type < NODE4_TEXT || type > NODE4_AUTO_CLOSE) return false;
  }
  return true;
}

bool isSoundConstruct(Node4C const& node) {
  OperatorBC const* const op = node.crefOperator();
  if (!op || op->isLinear() || !op->isConstruct() || node.crefText() != op->getName()) return false;
  if (op->getArity() != 0 && op->getArity() != node.numChildren()) return false;
  unsigned long const columns = op->getColumns();
  bool const isTable = node.numChildren() > 0 && node.numChildren() <= limits::max_table_cells;
  if (columns > 0 && !(isTable && node.numChildren() % columns == 0)) return false;
  return holdsOnlyRows(node);
}

/// Checks that a row is in canonical form.
TreeInvariantE checkRow(Node4C const& row) {
  unsigned long const count = row.numChildren();
  for (unsigned long i = 0; i < count; ++i) {
    if ((row.child(i)->getType() == NODE4_TEXT) != (i % 2 == 0)) return TREE_TEXTS_ALTERNATE;
  }
  if (count % 2 == 0) return TREE_TEXTS_ALTERNATE;
  BracketSumS const brackets = sumBrackets(row, 0, count);
  if (brackets.overtaken) return TREE_AUTO_BRACKETS_AT_ENDS;
  bool const balance = brackets.autoOpens == brackets.closes && brackets.autoCloses == brackets.opens;
  return balance ? TREE_VALID : TREE_BRACKETS_BALANCE;
}

/// Checks the stretches of a long row.
TreeInvariantE checkStretches(Node4C const& row, RowIndexC const& index) {
  std::size_t first = 0;
  long x = 0;
  for (std::size_t k = 0; k < index.size(); ++k) {
    RowStretchS const& stretch = index[k];
    if (stretch.first != first || first + stretch.count > row.numChildren())
      return TREE_STRETCHES_HOLD_THE_ROW;
    for (std::size_t i = first; i < first + stretch.count; ++i) {
      if (row.child(i)->crefState().stretch != &stretch) return TREE_STRETCHES_HOLD_THE_ROW;
    }
    BracketSumS const brackets = sumBrackets(row, first, stretch.count);
    first += stretch.count;
    if (row.getType() == NODE4_OPERATOR) {
      if (stretch.count != row.crefOperator()->getColumns()) return TREE_STRETCHES_HOLD_THE_ROW;
      continue;
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
  if (state.stretch) {
    RowIndexC const* const index = node.getParent() ? node.getParent()->crefState().index.get() : nullptr;
    std::size_t const number = node.findChildNumber() - state.stretch->first;
    above &= state.stretch->stale | (index ? index->getMarks(number) : 0u);
  }
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

TreeInvariantE validateShape(Node4C const& node) {
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (!node.child(i) || node.child(i)->getParent() != &node) return TREE_PARENTS_MATCH;
  }
  if (node.getType() != NODE4_OPERATOR && node.crefOperator()) return TREE_OPERATOR_HOLDS_ITS_ROWS;
  bool const holdsOneRow = node.numChildren() == 1 && holdsOnlyRows(node);
  switch (node.getType()) {
    case NODE4_ROOT:
      return holdsOneRow && !node.getParent() ? TREE_VALID : TREE_ROOT_HOLDS_ONE_ROW;
    case NODE4_LINE:
      return holdsOnlyItems(node) ? TREE_VALID : TREE_ROW_ITEM_KINDS;
    case NODE4_OPERATOR:
      return isSoundConstruct(node) ? TREE_VALID : TREE_OPERATOR_HOLDS_ITS_ROWS;
    case NODE4_POWER:
      return holdsOneRow ? TREE_VALID : TREE_POWER_HOLDS_ONE_ROW;
    default:
      return node.numChildren() == 0 ? TREE_VALID : TREE_LEAVES_HAVE_NO_CHILDREN;
  }
}

TreeFaultS validateTree(Node4C const& root) {
  if (root.getType() != NODE4_ROOT) return {TREE_ROOT_HOLDS_ONE_ROW, &root};
  TreeFaultS fault;
  unsigned long rows = 0;
  auto const check = [&](Node4C const& node) {
    TreeInvariantE broken = validateShape(node);
    if (broken == TREE_VALID && node.getType() == NODE4_LINE) {
      broken = ++rows > limits::max_nested_rows ? TREE_NESTING_WITHIN_LIMIT : checkRow(node);
    }
    return broken == TREE_VALID ? checkState(node) : broken;
  };
  auto const enter = [&](Node4C const& node) {
    fault.invariant = check(node);
    if (fault.invariant == TREE_VALID) return WALK_INTO;
    fault.node = &node;
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
  static constexpr std::pair<TreeInvariantE, char16_t const*> descriptions[] = {
      {TREE_VALID, u"the tree is valid"},
      {TREE_ROOT_HOLDS_ONE_ROW, u"the root has no parent and holds exactly one row"},
      {TREE_PARENTS_MATCH, u"no child slot is empty and every child names its parent"},
      {TREE_ROW_ITEM_KINDS, u"a row holds only texts, constructs, exponents and brackets"},
      {TREE_OPERATOR_HOLDS_ITS_ROWS,
       u"a construct, and nothing else, has an operator, its name, and as many rows as its arity"},
      {TREE_POWER_HOLDS_ONE_ROW, u"an exponent holds exactly one row"},
      {TREE_LEAVES_HAVE_NO_CHILDREN, u"texts and brackets have no children"},
      {TREE_TEXTS_ALTERNATE, u"texts and other items alternate in a row, with a text at both ends"},
      {TREE_BRACKETS_BALANCE,
       u"brackets balance in each row, with exactly as many supplied ones as it takes"},
      {TREE_AUTO_BRACKETS_AT_ENDS, u"nothing but empty texts stands outside a supplied bracket"},
      {TREE_NESTING_WITHIN_LIMIT, u"rows nest no deeper than the limit"},
      {TREE_PLACE_IN_TEXT, u"the caret and the anchor are places in texts of the tree"},
      {TREE_MARKS_GO_UP, u"S1: the marks of a node are on its parent, and on its stretch or its column"},
      {TREE_STRETCHES_HOLD_THE_ROW,
       u"S2: the stretches of a row follow one another and hold its items, which name them"},
      {TREE_BRACKET_SUMS, u"S3: an unmarked stretch knows its brackets"},
      {TREE_STRETCHES_FOLLOW,
       u"S4: in a row that is laid out, each stretch starts where the one before it ends"},
      {TREE_RECORDS_MATCH, u"S5: the record of an unmarked node is a copy of it"},
  };
  for (auto const& [described, text] : descriptions) {
    if (described == invariant) return text;
  }
  return wstring();
}

}  // namespace zolt::math::ved
