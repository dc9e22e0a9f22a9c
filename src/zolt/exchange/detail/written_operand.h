#pragma once

#include <string_view>
#include <vector>

#include "zolt/algexpr/parent_node.h"

namespace zolt::exchange::detail {

/// Whether the node is a number, of either kind.
bool isNumber(math::algexpr::NodeABC const& node);

/// Whether it is a name or a constant.
bool isName(math::algexpr::NodeABC const& node);

/// The node when it is brackets that a formula shows; null when it is not.
math::algexpr::ParentNodeABC const* asBrackets(math::algexpr::NodeABC const& node);

/// The operand as it is written. The readers make operations with `makeOperation`, which puts some operands
/// in brackets: these are not written, and the result is null when a reader would add some that are not
/// there.
math::algexpr::NodeABC const* findWrittenOperand(math::algexpr::ParentNodeABC const& node,
                                                 unsigned long index);

/// The name of a row of a table.
constexpr std::u16string_view list_name = u"list";
/// How many operands each row of a table has; 0 when the operands are no rows of one length.
unsigned long countColumns(math::algexpr::ParentNodeABC const& table);
/// The node when it is a matrix; null when it is not.
math::algexpr::ParentNodeABC const* asTable(math::algexpr::NodeABC const& node);
std::vector<oss::PointerTC<math::algexpr::NodeABC>> childrenOf(math::algexpr::ParentNodeABC const& node);

}  // namespace zolt::exchange::detail
