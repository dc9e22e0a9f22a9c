#pragma once

#include <cstddef>

/// The byte form of object streams, version 1 (docs/byte-format.md): each item is one tag byte, then its
/// value, little-endian.
namespace zolt::oss::byte_format {

enum TagE : unsigned char {
  TAG_START_AGGREGATE = 0x01,
  TAG_END_AGGREGATE = 0x02,
  TAG_INT16 = 0x03,
  TAG_UINT32 = 0x04,
  TAG_STRING = 0x05
};

constexpr std::size_t start_aggregate_size = 3;
constexpr std::size_t end_aggregate_size = 1;
constexpr std::size_t int16_size = 3;
constexpr std::size_t uint32_size = 5;
constexpr std::size_t empty_string_size = 5;

}  // namespace zolt::oss::byte_format
