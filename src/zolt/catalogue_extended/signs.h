#pragma once

#include "zolt/ved/operators/operator_list.h"

namespace zolt::catalogue_extended {

/// Adds the signs and constants that are written in a row: relations of sets, arrows, ∓, %, ∇, ℝ and the
/// like, and for the whole process how plain text and LaTeX write them.
void addSigns(math::ved::OperatorListC& operators);

}  // namespace zolt::catalogue_extended
