#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "zolt/oss/wstring.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {
class Node4C;
}

/// Building parts of a tree that are in no tree yet, for operators: texts, rows, constructs, and the operands
/// of a conversion. Whoever holds a part owns it; `ViewInsertionC` and `Node4C` take it over.
namespace zolt::math::ved::rows {

/// A node outside every tree.
using NodeT = std::unique_ptr<Node4C>;

/// A text, as an item of a row.
NodeT makeText(wstring const& text);
/// The brackets that a person types.
NodeT makeOpen();
NodeT makeClose();
/// A row with one empty text, which is a slot.
NodeT makeEmptyRow();
/// The node if it is a row, else a row that holds it.
NodeT toRow(NodeT node);
/// A construct without its rows: `numRows` null slots, which must be filled (`Node4C::setChild`) before
/// anything else looks at it.
NodeT makeConstruct(OperatorBC const& op, unsigned long numRows);
/// A construct with these rows; an empty slot for each that is null. `op` must be registered, or be the
/// variant of an operator that is.
NodeT makeConstruct(OperatorBC const& op, std::vector<NodeT> rows);

/// Takes the topmost entry off the stack of a conversion, with its precedence; an empty text when there is
/// none.
std::pair<NodeT, int> popOperand(ConversionStackT& stack);
/// Takes the topmost entry as a row.
NodeT popRow(ConversionStackT& stack);
/// The same, between parentheses when it binds looser than `precedence`.
NodeT popRow(ConversionStackT& stack, int precedence);
/// Takes the `count` topmost entries as rows; the last one was on top.
std::vector<NodeT> popRows(ConversionStackT& stack, unsigned long count);

/// Puts `operand` between parentheses, as a row.
NodeT bracket(NodeT operand);
/// `operand` as a row, between parentheses when they are needed.
NodeT bracketIf(bool needed, NodeT operand);
/// `row` followed by `operand` (an item, or a row that gives up its items). The result is the larger of the
/// two rows, so that long sums cost no more than their terms, to whichever side they nest.
NodeT join(NodeT row, NodeT operand);
/// Appends an item to a row.
void append(Node4C& row, NodeT item);
/// Inserts `count` rows of empty cells before row `at` of a table.
void insertTableRows(Node4C& table, unsigned long at, unsigned long count);
/// Makes a table one of `op`, with so many further columns of empty cells from column `at` on.
void insertTableColumns(Node4C& table, PointerTC<OperatorBC> const& op, unsigned long at);

}  // namespace zolt::math::ved::rows
