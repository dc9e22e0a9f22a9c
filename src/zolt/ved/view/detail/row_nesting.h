// Internal to the view: how deep rows nest, against the limit.
#pragma once

namespace zolt::math::ved {

class Node4C;

/// How deep rows nest in a subtree, including its top.
unsigned long countNestedRows(Node4C const& top);

/// How many rows contain `node`, including itself.
unsigned long countRowsAround(Node4C const& node);

}  // namespace zolt::math::ved
