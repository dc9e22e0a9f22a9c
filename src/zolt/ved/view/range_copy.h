#pragma once

#include <memory>

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

// What is shown between two places, as a row of its own.

namespace zolt::math::ved {

class Node4C;
class OperatorListC;

/// A copy of what is shown in `range`, which stays; null when the range has no anchor. A block of cells is a
/// table in that row, by an operator of `operators`.
std::unique_ptr<Node4C> copyRow(SelectionS const& range, OperatorListC const& operators);

/// The bytes of what `copyRow` gave for `range`, as `ViewZNT4C::paste` reads them: of a block, the table
/// alone.
oss::bytestring writeCopy(Node4C const& row, SelectionS const& range);

}  // namespace zolt::math::ved
