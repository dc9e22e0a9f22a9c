#pragma once

#include <string_view>
#include <vector>

#include "zolt/algexpr/parent_node.h"

namespace zolt::math::algexpr {

/// Whether the node is a number, of either kind.
bool isNumber(NodeABC const& node);
/// Whether it is a number with a minus of its own: "−2" and not "-(2)".
bool isNegativeNumber(NodeABC const& node);

/// Whether it is a name or a constant.
bool isName(NodeABC const& node);

/// Whether it is the name of a unit of angles, which an exponent alone would mean.
bool isAngleUnit(NodeABC const& node);

/// The node when it is brackets that a formula shows; null when it is not.
ParentNodeABC const* asBrackets(NodeABC const& node);

/// The operand as it is written. The readers make operations with `makeOperation`, which puts some operands
/// in brackets: these are not written, and the result is null when a reader would add some that are not
/// there.
NodeABC const* findWrittenOperand(ParentNodeABC const& node, unsigned long index);

/// The name of a row of a table.
constexpr std::u16string_view list_name = u"list";
/// How many operands each row of a table has; 0 when the operands are no rows of one length.
unsigned long countColumns(ParentNodeABC const& table);
/// The node when it is a matrix; null when it is not.
ParentNodeABC const* asTable(NodeABC const& node);
std::vector<PointerTC<NodeABC>> childrenOf(ParentNodeABC const& node);

}  // namespace zolt::math::algexpr
