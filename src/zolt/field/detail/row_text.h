#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using oss::wstring;

/// A stretch of a row, in reading order, as plain text, however incomplete it is: empty slots leave nothing,
/// constructs are calls, signs are as they are typed. What is complete is better written from its expression.
wstring writeRowText(math::ved::SelectionS const& stretch, math::ved::OperatorListC const& operators);

}  // namespace zolt::field::detail
