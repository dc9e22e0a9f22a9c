#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::oss {

/// Encodes in UTF-8. A surrogate without its partner becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

/// Where bytes are not UTF-8 for the first time.
struct Utf8FaultS {
  std::size_t byte = 0;       ///< the index of the first wrong byte
  std::size_t character = 0;  ///< the index of the U+FFFD in its place in the decoded text
};

/// Decodes UTF-8. False for other bytes: `text` then has a U+FFFD for each wrong sequence (as short as it can
/// be told to be wrong), and `fault` (may be null) tells about the first.
bool fromUtf8(std::string_view bytes, wstring& text, Utf8FaultS* fault = nullptr);

/// The same where the bytes are known to be UTF-8, or where a U+FFFD will do.
wstring fromUtf8(std::string_view bytes);

}  // namespace zolt::oss
