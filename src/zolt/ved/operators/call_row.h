#pragma once

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// A function call as a row: `name`, "(", arguments separated by ",", ")". Pops `numArguments` entries, the
/// last argument first; a missing one becomes an empty text. The row is built in that of its largest
/// argument, so that nested calls cost no more than their own text. The caller owns the row.
Node4C* makeCallRow(wstring const& name, unsigned long numArguments, ConversionStackT& stack);

}  // namespace zolt::math::ved
