#pragma once

#include "zolt/ved/operators/operator_list.h"

namespace zolt::catalogue_extended {

/// Registers matrices, determinants and cases, usual sizes of them for palettes, and what is done to their
/// rows and columns.
void addTableOperators(math::ved::OperatorListC& operators);

}  // namespace zolt::catalogue_extended
