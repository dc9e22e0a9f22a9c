#pragma once

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/common/read_error.h"
#include "zolt/mathml/mathml_tree.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::mathml {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using math::common::ReadErrorS;
using oss::PointerTC;

// Expressions in MathML. docs/mathml.md says what is read as what and what is written. Reading and writing
// take linear time and do not recurse. Texts are read by `mathml/text/mathml_text.h`.

/// The expression that a complete tree means, in presentation or in content MathML. Null when it has no
/// meaning; `*error` (may be null) then says where in the text that was read, in which element, and why.
[[nodiscard]] PointerTC<AlgebraicExpressionC> fromMathml(MathmlTreeC const& tree,
                                                         PointerTC<CASSessionBC> session,
                                                         ReadErrorS* error = nullptr);

enum MathmlAnnotationE {
  MATHML_PLAIN,
  MATHML_ANNOTATED  ///< in "semantics", with LaTeX as annotation
};

/// One `math` element in presentation MathML, of the elements of MathML Core, as in a textbook. It reads back
/// to an equal expression. Empty for the empty expression.
wstring toMathml(AlgebraicExpressionC const& expression, MathmlAnnotationE annotation = MATHML_PLAIN);

/// The same in content MathML.
wstring toContentMathml(AlgebraicExpressionC const& expression);

}  // namespace zolt::mathml
