#pragma once

#include "zolt/algexpr/parent_node.h"

namespace zolt::exchange::detail {

/// Whether the node is a number, of either kind.
bool isNumber(math::algexpr::NodeABC const& node);

/// The node when it is brackets that a formula shows; null when it is not.
math::algexpr::ParentNodeABC const* asBrackets(math::algexpr::NodeABC const& node);

/// The operand as it is written. The readers make operations with `makeOperation`, which puts some operands
/// in brackets: these are not written, and the result is null when a reader would add some that are not
/// there.
math::algexpr::NodeABC const* findWrittenOperand(math::algexpr::ParentNodeABC const& node,
                                                 unsigned long index);

}  // namespace zolt::exchange::detail
