#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::cli {

/// Decodes UTF-8. Returns false for other bytes: `text` then has a U+FFFD for each wrong sequence, `badByte`
/// is the index of the first wrong byte and `badCharacter` that of its U+FFFD in `text`.
bool fromUtf8(std::string_view bytes, oss::wstring& text, std::size_t& badByte, std::size_t& badCharacter);

/// Arguments, names of files and what else a terminal is to show, as one line that cannot control it.
std::string toShown(std::string_view bytes);

/// Encodes in UTF-8; a surrogate without its partner becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

}  // namespace zolt::cli
