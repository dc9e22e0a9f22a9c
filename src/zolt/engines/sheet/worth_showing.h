#pragma once

#include "zolt/engines/sheet/sheet_engine.h"

namespace zolt::engine_sheet {

/// What of a result a person wants to see under a formula. A value that only says again what the formula says
/// is not worth a line, nor is the fact that a formula with open variables has no value.
struct ShownS {
  bool isValue = false;
  bool isImplied = false;  ///< the value follows from the formula, a relation, and is not equal to it
  bool isNumber = false;
  bool isNumberExact = false;          ///< nothing has been rounded
  CASResultS const* reason = nullptr;  ///< why there is no value; part of the line's result
};

/// `digits` are those that an approximation was asked for.
ShownS findShown(AlgebraicExpressionC const& expression, LineResultS const& result, unsigned digits);

/// Whether an approximation with so many digits says more than the value, or there is hope of one.
bool wantsNumber(CASResultS const& value, unsigned digits);

}  // namespace zolt::engine_sheet
