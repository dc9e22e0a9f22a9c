#pragma once

#include <initializer_list>
#include <utility>

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

// What constructs share: how one is made from an expression, and how one is inserted at the caret.

/// For `OperatorBC::fromAlgebraicNode`: a node of the construct `op`, owned by the caller, with its
/// precedence. Its rows are the topmost entries of the stack; `rows` names the child that each takes,
/// beginning with the last argument.
std::pair<Node4C*, int> makeConstruct(OperatorBC const& op, std::initializer_list<unsigned long> rows,
                                      ConversionStackT& stack);

// For `OperatorBC::runOperator`. Both return false, with nothing changed, where rows may not nest deeper.

/// Inserts a construct of one row around the selection; the caret goes to the end of that row. Without a
/// selection the row is an empty slot with the caret in it.
bool insertEnclosure(OperatorBC const& op, ViewZNT4C& view);

/// Inserts a construct of `op.getArity()` rows; the selection becomes row `content`, the others are empty
/// slots. The caret goes to `first` with a selection and to child 0 without one; both are empty slots then.
bool insertConstruct(OperatorBC const& op, ViewZNT4C& view, unsigned long content, unsigned long first);

}  // namespace zolt::math::ved
