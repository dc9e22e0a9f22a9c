#pragma once

#include <string>

#include "fuzzing/targets.h"
#include "zolt/oss/wstring.h"

namespace zolt::fuzz {

using oss::wstring;

/// UTF-8 in which surrogates may be unpaired, each encoded like any other character; a byte that belongs to
/// no such sequence is the character of its value. So every byte sequence is a text, every text has a byte
/// sequence, and the lines of the corpora are valid inputs.
wstring toText(std::uint8_t const* data, std::size_t size);
wstring toText(std::string const& bytes);
std::string toBytes(wstring const& text);

}  // namespace zolt::fuzz
