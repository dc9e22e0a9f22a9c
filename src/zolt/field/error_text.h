#pragma once

#include "zolt/common/read_error.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/convert/error_selection.h"

namespace zolt::field {

using oss::wstring;

/// Why a formula is not an expression yet, as one English sentence for the person who edits it. It begins
/// with a capital and has no full stop. It calls the faulty part "this", since the host shows that part
/// selected.
wstring describe(math::ved::ErrorCauseE cause);

/// The same cause as all readers name it.
math::common::ReadErrorE toReadError(math::ved::ErrorCauseE cause);

/// Why a text that was typed or pasted is refused: the cause, with the character that no formula holds, and
/// what is before the fault in a longer text.
wstring describeRefusal(math::common::ReadErrorS const& error, wstring const& text);

}  // namespace zolt::field
