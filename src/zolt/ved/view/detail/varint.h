// Internal to the edit history: unsigned numbers in as few bytes as they need.
#pragma once

#include <cstddef>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

inline void appendVarint(oss::bytestring& bytes, std::size_t value) {
  while (value >= 0x80) {
    bytes += static_cast<unsigned char>(value | 0x80);
    value >>= 7;
  }
  bytes += static_cast<unsigned char>(value);
}

/// Reads what `appendVarint` wrote at `position` and moves past it.
inline std::size_t readVarint(oss::bytestring const& bytes, std::size_t& position) {
  std::size_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    unsigned char const byte = bytes[position++];
    value |= static_cast<std::size_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return value;
  }
}

}  // namespace zolt::math::ved
