#pragma once

#include "zolt/ved/operators/operator_list.h"

namespace zolt::tests {

/// The process's operator table, filled with the standard operators on first use.
math::ved::OperatorListC& standardOperators();

}  // namespace zolt::tests
