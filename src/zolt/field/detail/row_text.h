#pragma once

#include "zolt/field/detail/stretch.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using oss::wstring;

/// A stretch of a row as plain text, however incomplete it is: empty slots leave nothing, constructs are
/// calls, signs are as they are typed. What is complete is better written from its expression.
wstring writeRowText(StretchS const& stretch, math::ved::OperatorListC const& operators);

}  // namespace zolt::field::detail
