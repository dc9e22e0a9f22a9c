#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/convert/error_selection.h"

namespace zolt::field {

using oss::wstring;

/// Why a formula is not an expression yet, as one English sentence for the person who edits it: with a
/// capital in front, without a full stop. The faulty part is selected meanwhile, so it is "this".
wstring describe(math::ved::ErrorCauseE cause);

}  // namespace zolt::field
