#pragma once

#include <string>

namespace zolt::oss {

/// Text is held in 16-bit characters (UTF-16 code units) on every platform; UTF-8 exists only at hosts.
using wstring = std::u16string;

/// A string of raw bytes, as the clipboard carries it.
using bytestring = std::basic_string<unsigned char>;

}  // namespace zolt::oss
