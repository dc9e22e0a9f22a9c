#pragma once

#include <utility>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::tests {

/// The process's operator table, filled with the standard operators on first use; with the extended ones,
/// too, where the environment has ZOLT_TEST_EXTENDED.
math::ved::OperatorListC& standardOperators();

/// Those of them that expressions have, and not palettes and keys alone.
std::vector<math::ved::OperatorBC const*> operatorsOfExpressions();

/// The operator with operands of the kind that it is for: letters, rows of a table, kinds of ends; the
/// constant.
oss::PointerTC<math::algexpr::NodeABC> makeSample(math::ved::OperatorBC const& op);

/// The text before and after an expression that becomes an argument with a row of its own: of each construct
/// and of the power, each argument once.
std::vector<std::pair<oss::wstring, oss::wstring>> everyNesting();

}  // namespace zolt::tests
