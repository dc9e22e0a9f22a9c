#pragma once

#include "tests/operators/host_operators.h"
#include "tests/support/operators.h"
#include "zolt/ved/operators/operator_power.h"
#include "zolt/ved/operators/operator_unary_postfix.h"

namespace zolt::tests {

/// The process's operator table with, besides the standard operators, what a host may register although they
/// have nothing of the kind.
inline math::ved::OperatorListC& allOperators() {
  using namespace math::ved;
  static OperatorListC& operators = []() -> OperatorListC& {
    OperatorListC& list = standardOperators();
    list.add(new OperatorBC(u"call3", u"f3", 3, 0, false, false, 0));
    list.add(new OperatorBC(u"call10", u"f10", 1, 10, false, false, 0));
    list.add(new OperatorBC(u"call0", u"f0", 0, 0, false, false, 0));
    list.add(new OperatorPowerC(u"square", u"square", 10, u"2", true, false, 0));
    list.add(new OperatorPowerC(u"epower", u"epower", 10, u"e", false, false, 0));
    list.add(new OperatorUnaryPostfixC(u"percent", u"%%", 5, false, 0));
    addHostOperators(list);
    return list;
  }();
  return operators;
}

}  // namespace zolt::tests
