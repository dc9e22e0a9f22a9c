#pragma once

#include <utility>
#include <vector>

#include "zolt/ved/operators/operator_list.h"

namespace zolt::tests {

/// The process's operator table, filled with the standard operators on first use; with the extended ones,
/// too, where the environment has ZOLT_TEST_EXTENDED.
math::ved::OperatorListC& standardOperators();

/// The text before and after an expression that becomes an argument with a row of its own: of each construct
/// and of the power, each argument once.
std::vector<std::pair<oss::wstring, oss::wstring>> everyNesting();

}  // namespace zolt::tests
