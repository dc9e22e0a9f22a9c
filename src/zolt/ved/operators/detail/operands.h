// Internal to operators/: taking operands off the conversion stack and putting rows together.
#pragma once

#include <initializer_list>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4_type.h"

namespace zolt::math::ved::detail {

/// A detached item, the caller's.
Node4C* makeText(wstring const& text);
Node4C* makeItem(Node4TypeE type);
/// A row of one empty text: a slot to be filled.
Node4C* makeEmptyRow();

/// Takes the topmost entry; an empty text when there is none.
std::pair<Node4C*, int> popOperand(ConversionStackT& stack);
/// The same as a row.
Node4C* popRow(ConversionStackT& stack);

/// A node of the construct `op` whose rows are the topmost entries of the stack; `rows` names the child that
/// each takes, beginning with the last argument.
Node4C* makeConstruct(OperatorBC const& op, std::initializer_list<unsigned long> rows,
                      ConversionStackT& stack);

/// Puts `operand` between parentheses, as a row.
Node4C* bracket(Node4C* operand);
/// `row` followed by `operand` (an item, or a row that gives up its items). The result is the larger of the
/// two rows, so that long sums cost no more than their terms, to whichever side they nest.
Node4C* join(Node4C* row, Node4C* operand);
/// Appends an item to a row.
void append(Node4C& row, Node4C* item);

}  // namespace zolt::math::ved::detail
