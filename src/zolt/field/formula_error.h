#pragma once

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/common/read_error.h"
#include "zolt/oss/pointer.h"
#include "zolt/ved/geometry/rectangle.h"
#include "zolt/ved/tree/place.h"

namespace zolt::field {

/// Why a formula is not an expression yet, and which part of it is to blame.
struct FormulaErrorS : math::common::ReadErrorS {
  math::ved::SelectionS range;  ///< its ends are equal where something is missing
  math::ved::RectangleS box;    ///< around the range, in view coordinates
};

/// Why input was refused: `range` and `box` are where it was to go, `begin` to `end` the part of its text
/// that is to blame.
struct RefusalS : FormulaErrorS {
  oss::wstring character;  ///< the first one that no formula holds; empty: none is to blame
};

/// The expression that a formula is, or the reason why it is none yet.
struct FormulaDiagnosisS {
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression;
  FormulaErrorS error;  ///< meaningful only without an expression
};

}  // namespace zolt::field
