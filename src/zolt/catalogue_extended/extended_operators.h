#pragma once

#include "zolt/ved/operators/operator_list.h"

namespace zolt::catalogue_extended {

/// Registers more of mathematics than the standard operators, after these: binomial coefficients, norms and
/// the like, each with its words. It uses what any host may use, and changes nothing for a process that does
/// not call it. Call it before other threads read or write formulas.
void registerExtendedOperators(math::ved::OperatorListC& operators);

}  // namespace zolt::catalogue_extended
