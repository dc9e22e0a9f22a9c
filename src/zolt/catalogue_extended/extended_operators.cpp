#include "zolt/catalogue_extended/extended_operators.h"

#include "zolt/catalogue_extended/operator_binomial.h"
#include "zolt/catalogue_extended/operator_norm.h"
#include "zolt/catalogue_extended/operator_where_equation.h"
#include "zolt/catalogue_extended/signs.h"
#include "zolt/catalogue_extended/table_operators.h"

namespace zolt::catalogue_extended {

void registerExtendedOperators(math::ved::OperatorListC& operators) {
  if (auto const where = operators.lookup(u"where")) operators.add(new OperatorWhereEquationC(*where));
  // Palettes show them in this order.
  operators.add(new OperatorBinomialC);
  operators.add(new OperatorNormC);
  addTableOperators(operators);
  addSigns(operators);
}

}  // namespace zolt::catalogue_extended
