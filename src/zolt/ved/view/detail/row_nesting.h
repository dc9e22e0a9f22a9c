// Internal to the view: how deep rows nest, against the limit.
#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

class Node4C;

/// How deep rows nest in a subtree, including its top.
unsigned long countNestedRows(Node4C const& top);

/// How deep the rows in a selection nest; 0 without a selection.
unsigned long countNestedRows(SelectionS const& selection);

/// How many rows contain `node`, including itself.
unsigned long countRowsAround(Node4C const& node);

/// What an insertion goes into: the selection's row, or the caret's.
Node4C const& crefCurrentRow(SelectionS const& selection);

/// Whether the limit allows so many more rows, one in another, in that row.
bool mayNest(unsigned long rows, SelectionS const& selection);

}  // namespace zolt::math::ved
