#pragma once

#include <cstddef>
#include <string_view>

namespace zolt::math::ved::detail {

/// Whether a number token starts with `c`.
inline bool startsNumber(char16_t c) { return (c >= u'0' && c <= u'9') || c == u'.'; }

/// The index behind the number token that starts at `begin`: digits and points in any order, then perhaps an
/// "E" with a sign and more of them. Whether the run is a number is for others to say.
std::size_t findNumberEnd(std::u16string_view text, std::size_t begin);

/// Whether `text` is one number token, perhaps with blanks around; `number` is the token then.
bool isNumberToken(std::u16string_view text, std::u16string_view& number);

}  // namespace zolt::math::ved::detail
