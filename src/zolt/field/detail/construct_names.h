#pragma once

#include <cstddef>
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

/// The construct that a name typed before "(" means.
struct ConstructNameS {
  PointerTC<OperatorBC> op;  ///< null: no construct
  wstring
      mark;  ///< what the name says about the second argument, for its row: "2" for "log_2", "3" for "cbrt"
};

/// The construct that `name(` becomes. A name that is also the text of a plain function becomes one only with
/// a mark.
ConstructNameS findConstruct(OperatorListC const& operators, wstring const& name);

/// The construct of two arguments that `name`, which ends with "_", and the second one in brackets begin:
/// "log_(b)(x)". Null: none.
PointerTC<OperatorBC> findMarkable(OperatorListC const& operators, wstring const& name);

/// The construct of so many arguments that is typed by the name of this one (`OperatorWordsS::sharedName`).
/// Null: none.
PointerTC<OperatorBC> findSharing(OperatorListC const& operators, OperatorBC const& op,
                                  std::size_t numArguments);

/// The construct that such a plain function becomes when a second argument is typed.
PointerTC<OperatorBC> findConstructOfPair(OperatorListC const& operators, wstring const& name);

/// The operator that a character inserts, other than its own text: "√" sqrt, "°" _deg; null: none.
PointerTC<OperatorBC> findBySign(OperatorListC const& operators, char16_t sign);

/// The sign or constant that a name means, "∈" for "in": by the operator's name or another one of its words,
/// unless the name is what is shown. Null: none.
PointerTC<OperatorBC> findSignByName(OperatorListC const& operators, wstring const& name);

/// The operator that replaces the signs just before a position in a text.
struct SignRunS {
  PointerTC<OperatorBC> op;  ///< null: none
  unsigned int length = 0;   ///< the number of characters that the signs take
};
SignRunS findBySignRun(OperatorListC const& operators, wstring const& text, unsigned int pos);

/// What a person types for the operator: "<=" for "≤", "sqrt(".
wstring typedForm(OperatorBC const& op);

/// Whether inserting the operator writes brackets after its text.
bool isCalled(OperatorBC const& op);

/// Whether the construct is written as a name with brackets, which a typed ")" then closes.
bool isWrittenAsCall(OperatorBC const& op);

/// The rows of a construct of so many in the order in which a person fills them, usually that of its
/// arguments.
std::vector<unsigned long> argumentRows(OperatorBC const& op, unsigned long numRows);

}  // namespace zolt::field::detail
