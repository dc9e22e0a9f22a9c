// Internal to the view: what may be pasted from the clipboard.
#pragma once

namespace zolt::math::ved {

class Node4C;

/// Whether a tree that was read from bytes is a row that the editor could have written. Only such a row can
/// be laid out, edited and converted. Takes linear time and does not recurse.
bool isPastableRow(Node4C const& top);

}  // namespace zolt::math::ved
