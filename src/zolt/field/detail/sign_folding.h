#pragma once

#include "zolt/field/input_options.h"
#include "zolt/oss/wstring.h"

namespace zolt::field::detail {

using oss::wstring;

/// The character that `c` stands for: signs that look alike are one, full-width forms are narrow, blanks of
/// any width are " ".
char16_t foldCharacter(char16_t c, InputOptionsS const& options);

/// The letter under a circumflex, "ê" as "e"; U+0000 when there is none.
char16_t withoutCircumflex(char16_t c);

}  // namespace zolt::field::detail
