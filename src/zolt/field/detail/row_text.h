#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using oss::wstring;

/// Plain text for a stretch of a row, given in reading order, which may be incomplete: an empty slot adds no
/// text, a construct is written as a call, and signs are written as they are typed. For a complete stretch
/// the text of its expression is better.
wstring writeRowText(math::ved::SelectionS const& stretch, math::ved::OperatorListC const& operators);

}  // namespace zolt::field::detail
