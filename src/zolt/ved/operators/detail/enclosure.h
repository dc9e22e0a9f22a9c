// Internal to operators/: insertions that several constructs share.
#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved::detail {

/// Inserts a construct of one row around the selection; the caret goes to the end of that row. Without a
/// selection the row is an empty slot with the caret in it.
bool insertEnclosure(OperatorBC const& op, ViewZNT4C& view);

/// Inserts a construct of `op.getArity()` rows; the selection becomes row `content`, the others are empty
/// slots. The caret goes to `first` with a selection and to child 0 without one; both are empty slots then.
bool insertConstruct(OperatorBC const& op, ViewZNT4C& view, unsigned long content, unsigned long first);

}  // namespace zolt::math::ved::detail
