#include "zolt/catalogue_extended/extended_operators.h"

#include "zolt/catalogue_extended/operator_accent.h"
#include "zolt/catalogue_extended/operator_antiderivative.h"
#include "zolt/catalogue_extended/operator_binomial.h"
#include "zolt/catalogue_extended/operator_derivative.h"
#include "zolt/catalogue_extended/operator_index.h"
#include "zolt/catalogue_extended/operator_interval.h"
#include "zolt/catalogue_extended/operator_limit.h"
#include "zolt/catalogue_extended/operator_norm.h"
#include "zolt/catalogue_extended/operator_product.h"
#include "zolt/catalogue_extended/operator_set.h"
#include "zolt/catalogue_extended/operator_where_equation.h"
#include "zolt/catalogue_extended/plain_rows.h"
#include "zolt/catalogue_extended/signs.h"
#include "zolt/catalogue_extended/table_operators.h"

namespace zolt::catalogue_extended {

namespace {

/// What is told to the notations counts for the whole process, whatever tables there are.
void registerRowsOnce() { [[maybe_unused]] static bool const registered = (registerPlainRows(), true); }

}  // namespace

void registerExtendedOperators(math::ved::OperatorListC& operators) {
  registerRowsOnce();
  if (auto const where = operators.lookup(u"where")) operators.add(new OperatorWhereEquationC(*where));
  // Palettes show them in this order.
  operators.add(new OperatorIndexC);
  operators.add(new OperatorSecondIndexC);
  operators.add(new OperatorBinomialC);
  operators.add(new OperatorNormC);
  operators.add(new OperatorVecC);
  operators.add(new OperatorConjC);
  operators.add(new OperatorHatC);
  operators.add(new OperatorDotC);

  operators.add(new OperatorAntiderivativeC);
  operators.add(new OperatorProductC);
  operators.add(new OperatorLimitC);
  for (auto const side :
       {OperatorLimitC::FROM_BELOW, OperatorLimitC::FROM_ABOVE, OperatorLimitC::BOTH_SIDES}) {
    operators.add(new OperatorLimitSideC(side));
  }
  operators.add(new OperatorLimitBothC);
  operators.add(new OperatorDiffnC);
  operators.add(new OperatorPdiffC);
  operators.add(new OperatorPdiffnC);

  operators.add(new OperatorSetC);
  operators.add(new OperatorElementC);
  operators.add(new OperatorIntervalC);
  operators.add(new OperatorIntervalEndC(OperatorIntervalEndC::END_CLOSED));
  operators.add(new OperatorIntervalEndC(OperatorIntervalEndC::END_OPEN));
  for (char16_t const sign : {u']', u')'}) operators.add(new OperatorIntervalFromBracketC(sign));
  operators.add(new OperatorMatrixFromIntervalC);
  addTableOperators(operators);
  addSigns(operators);
}

}  // namespace zolt::catalogue_extended
