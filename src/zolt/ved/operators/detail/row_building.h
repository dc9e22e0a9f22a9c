// Internal to operators/: taking operands off the conversion stack and building rows of them.
#pragma once

#include <memory>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved::detail {

/// A node outside every tree, which is destroyed with its holder when memory runs out half-way.
using NodeT = std::unique_ptr<Node4C>;

NodeT makeText(wstring const& text);
NodeT makeItem(Node4TypeE type);
/// The construct `op` without its rows.
NodeT makeConstructNode(OperatorBC const& op, unsigned long numRows);
/// A row with one empty text, which is a slot.
NodeT makeEmptyRow();
/// The node if it is a row, else a row that holds it.
NodeT toRow(NodeT node);

/// Takes the topmost entry; an empty text when there is none.
std::pair<NodeT, int> popOperand(ConversionStackT& stack);
/// Takes the topmost entry as a row.
NodeT popRow(ConversionStackT& stack);
/// The same, between parentheses when it binds looser than `precedence`.
NodeT popRow(ConversionStackT& stack, int precedence);

/// Puts `operand` between parentheses, as a row.
NodeT bracket(NodeT operand);
/// `operand` as a row, between parentheses when they are needed.
NodeT bracketIf(bool needed, NodeT operand);
/// `row` followed by `operand` (an item, or a row that gives up its items). The result is the larger of the
/// two rows, so that long sums cost no more than their terms, to whichever side they nest.
NodeT join(NodeT row, NodeT operand);
/// Appends an item to a row.
void append(Node4C& row, NodeT item);

}  // namespace zolt::math::ved::detail
