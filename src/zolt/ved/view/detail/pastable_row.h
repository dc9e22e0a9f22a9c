// Internal to the view: what may come in from the clipboard.
#pragma once

namespace zolt::math::ved {

class Node4C;

/// Whether a tree read from bytes is a row that the editor could have written: only then can it be laid out,
/// edited and converted. Linear, without recursion.
bool isPastableRow(Node4C const& top);

}  // namespace zolt::math::ved
