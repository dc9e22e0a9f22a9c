#pragma once

#include "zolt/field/auto_replace.h"
#include "zolt/ved/convert/diagnosis.h"

namespace zolt::math::ved {
class Node4C;
class OperatorListC;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

/// The diagnosis of a formula, or of a row copied from one, as it is handed out: as if `completion` had been
/// made and, where the options say so, with what people leave out. A multiplication sign is implied wherever
/// two operands are side by side ("2x", "3(a+b)", "x²y", a number before a construct), brackets after a
/// function ("sin 2x"), whose exponent applies to its value ("sin²x"). A name before a bracket remains a
/// call, and a name of several letters remains one name. `completion` without a beginning is none. Unless
/// `parts` is null, it receives where the nodes of the expression came from (`math::ved::findParts`).
math::ved::DiagnosisS diagnoseTyped(math::ved::Node4C const& formula,
                                    math::ved::OperatorListC const& operators, InputOptionsS const& options,
                                    ReplacementS const& completion = {},
                                    std::vector<math::ved::SelectionS>* parts = nullptr);

}  // namespace zolt::field::detail
