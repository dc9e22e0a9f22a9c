#pragma once

#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class OperatorBC;
class OperatorListC;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using math::ved::OperatorBC;
using math::ved::OperatorListC;
using oss::PointerTC;
using oss::wstring;

/// What a typed name in front of "(" stands for.
struct ConstructNameS {
  PointerTC<OperatorBC> op;  ///< null: no construct
  wstring mark;              ///< written with the name, for the row of the second argument: "log_2", "cbrt"
};

/// The construct that `name(` becomes. Of a name that the table also knows as the text of a plain function
/// only with a mark.
ConstructNameS findConstruct(OperatorListC const& operators, wstring const& name);

/// The construct that such a plain function becomes with a second argument.
PointerTC<OperatorBC> findConstructOfPair(OperatorListC const& operators, wstring const& name);

/// The operator that a character inserts, other than its own text: "√" sqrt, "°" _deg; null: none.
PointerTC<OperatorBC> findBySign(OperatorListC const& operators, char16_t sign);

/// What the signs before a place of a text become.
struct SignRunS {
  PointerTC<OperatorBC> op;  ///< null: nothing
  unsigned int length = 0;   ///< of the signs
};
SignRunS findBySignRun(OperatorListC const& operators, wstring const& text, unsigned int pos);

/// What is typed for the operator: "<=" for "≤", "sqrt(".
wstring typedForm(OperatorBC const& op);

/// Whether the construct is written as a name with brackets, which a typed ")" then closes.
bool isWrittenAsCall(OperatorBC const& op);

/// The rows of the construct in the order of its arguments.
std::vector<unsigned long> argumentRows(OperatorBC const& op);

}  // namespace zolt::field::detail
