#include "zolt/surfaces/cairo/detail/png_text.h"

#include <cstdint>

namespace zolt::surfaces {

namespace {

constexpr std::size_t signature_size = 8;
/// The length, name, 13 bytes and checksum of the first chunk, which is the header.
constexpr std::size_t header_size = 4 + 4 + 13 + 4;

std::uint32_t checksum(std::string const& bytes) {
  std::uint32_t value = 0xFFFFFFFFu;
  for (char const c : bytes) {
    value ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) value = value & 1 ? 0xEDB88320u ^ value >> 1 : value >> 1;
  }
  return ~value;
}

void append32(std::string& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out += char(value >> shift & 0xFF);
}

}  // namespace

bool insertPngText(std::string& png, std::string const& keyword, std::string const& text) {
  if (png.size() < signature_size + header_size || png.compare(1, 3, "PNG") != 0) return false;
  // These bytes are: the keyword's end, no compression (two bytes), no language, no translated keyword.
  std::string const content = "iTXt" + keyword + std::string(5, '\0') + text;
  std::string chunk;
  append32(chunk, std::uint32_t(content.size() - 4));
  chunk += content;
  append32(chunk, checksum(content));
  png.insert(signature_size + header_size, chunk);
  return true;
}

}  // namespace zolt::surfaces
