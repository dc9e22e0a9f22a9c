#pragma once

#include <vector>

#include "zolt/field/input_options.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using oss::wstring;

/// The factors of a typed name when every letter is a variable: functions, Greek names and the names of the
/// options stay whole, and digits, an index and primes belong to what is before them. A word between operands
/// ("mod"), a name that begins with an underscore and one of `most_split` characters or more are one factor.
/// `name` must not be empty.
std::vector<wstring> findFactors(wstring const& name, math::ved::OperatorListC const& operators,
                                 std::vector<wstring> const& names);

constexpr std::size_t most_split = 200;

/// What a whole name means: the letter for "alpha", the name of the operator for "pi"; the name itself when
/// it means nothing else.
wstring toMeantName(wstring const& name);
/// The same before the brackets of a call.
wstring toCalledName(wstring const& name, math::ved::OperatorListC const& operators);

}  // namespace zolt::field::detail
