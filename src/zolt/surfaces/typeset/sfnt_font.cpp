#include "zolt/surfaces/typeset/sfnt_font.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zolt::surfaces {

namespace {

constexpr std::size_t directory_start = 12, directory_entry = 16;
constexpr std::uint32_t segment_format = 4, group_format = 12;

/// The first entry of a sorted table that does not come before what is sought.
template <class IsBeforeT>
std::uint32_t findEntry(std::uint32_t count, IsBeforeT isBefore) {
  std::uint32_t low = 0;
  for (std::uint32_t high = count; low < high;) {
    std::uint32_t const middle = low + (high - low) / 2;
    if (isBefore(middle)) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

}  // namespace

bool SfntFontC::parse(std::string bytes, std::string& error) {
  bytes_ = std::move(bytes);
  if (readTables(error)) return true;
  *this = SfntFontC();
  return false;
}

bool SfntFontC::readTables(std::string& error) {
  constexpr std::uint32_t true_type = 0x00010000, apple_true_type = 0x74727565, open_type = 0x4F54544F;
  std::uint32_t const kind = read32(0);
  if (kind != true_type && kind != apple_true_type && kind != open_type) {
    error = "not a TrueType or OpenType font file";
    return false;
  }
  TableS head, hhea, maxp;
  if (!findTable("head", head) || !findTable("hhea", hhea) || !findTable("maxp", maxp) ||
      !findTable("hmtx", advances_) || !chooseCharacterMap()) {
    error = "the font lacks a table for measuring text, or the file is cut short";
    return false;
  }
  if (!findTable("glyf", outlines_) || !findTable("loca", outlinePlaces_)) outlines_.length = 0;
  placesAreLong_ = read16(head.offset + 50) != 0;
  unitsPerEm_ = int(read16(head.offset + 18));
  glyphCount_ = read16(maxp.offset + 4);
  advanceCount_ = read16(hhea.offset + 34);
  if (unitsPerEm_ < 16 || unitsPerEm_ > 16384 || advanceCount_ == 0 ||
      advances_.length < std::size_t(advanceCount_) * 4) {
    error = "the font's measures are out of range";
    return false;
  }
  return true;
}

bool SfntFontC::findTable(char const* tag, TableS& table) const {
  std::uint32_t const count = read16(4);
  for (std::uint32_t i = 0; i < count; ++i) {
    std::size_t const entry = directory_start + i * directory_entry;
    if (entry + directory_entry > bytes_.size()) return false;
    if (std::memcmp(bytes_.data() + entry, tag, 4) != 0) continue;
    table.offset = read32(entry + 8);
    table.length = read32(entry + 12);
    return table.offset <= bytes_.size() && table.length <= bytes_.size() - table.offset;
  }
  return false;
}

bool SfntFontC::chooseCharacterMap() {
  TableS cmap;
  if (!findTable("cmap", cmap)) return false;
  int bestRank = 0;
  std::uint32_t const count = read16(cmap.offset + 2);
  for (std::uint32_t i = 0; i < count; ++i) {
    std::size_t const entry = cmap.offset + 4 + i * 8;
    if (entry + 8 > cmap.offset + cmap.length) break;
    std::uint32_t const platform = read16(entry), encoding = read16(entry + 2), offset = read32(entry + 4);
    if (offset >= cmap.length) continue;
    constexpr std::uint32_t unicode = 0, windows = 3, windows_bmp = 1, windows_full = 10;
    if (platform != unicode &&
        !(platform == windows && (encoding == windows_bmp || encoding == windows_full))) {
      continue;
    }
    std::uint32_t const format = read16(cmap.offset + offset);
    int const rank = format == group_format ? 2 : format == segment_format ? 1 : 0;
    if (rank <= bestRank) continue;
    bestRank = rank;
    map_ = {cmap.offset + offset, cmap.length - offset};
    mapHasGroups_ = format == group_format;
  }
  return bestRank > 0;
}

std::uint32_t SfntFontC::read16(std::size_t offset) const {
  if (offset >= bytes_.size() || bytes_.size() - offset < 2) return 0;
  auto const* p = reinterpret_cast<unsigned char const*>(bytes_.data()) + offset;
  return std::uint32_t(p[0]) << 8 | p[1];
}

std::uint32_t SfntFontC::read32(std::size_t offset) const {
  return read16(offset) << 16 | read16(offset + 2);
}

std::uint16_t SfntFontC::findGlyph(char32_t codePoint) const {
  std::uint32_t const glyph = mapHasGroups_ ? findInGroups(codePoint) : findInSegments(codePoint);
  return glyph < glyphCount_ ? std::uint16_t(glyph) : no_glyph;
}

std::uint32_t SfntFontC::findInSegments(char32_t codePoint) const {
  if (codePoint > 0xFFFF) return no_glyph;
  std::uint32_t const count = read16(map_.offset + 6) / 2;
  std::size_t const ends = map_.offset + 14, starts = ends + count * 2 + 2;
  std::size_t const deltas = starts + count * 2, ranges = deltas + count * 2;
  std::uint32_t const low = findEntry(count, [&](auto i) { return read16(ends + i * 2) < codePoint; });
  if (low == count) return no_glyph;
  std::uint32_t const start = read16(starts + low * 2);
  if (codePoint < start) return no_glyph;
  std::uint32_t const delta = read16(deltas + low * 2);
  std::uint32_t const range = read16(ranges + low * 2);
  if (range == 0) return (codePoint + delta) & 0xFFFF;
  // In this format the range offset is counted from the place where it is stored.
  std::uint32_t const glyph = read16(ranges + low * 2 + range + (codePoint - start) * 2);
  return glyph == 0 ? no_glyph : (glyph + delta) & 0xFFFF;
}

std::uint32_t SfntFontC::findInGroups(char32_t codePoint) const {
  constexpr std::size_t group_size = 12;
  std::size_t const groups = map_.offset + 16;
  std::uint32_t const count = std::min(read32(map_.offset + 12), std::uint32_t(map_.length / group_size));
  std::uint32_t const index =
      findEntry(count, [&](auto i) { return read32(groups + i * group_size + 4) < codePoint; });
  std::size_t const group = groups + index * group_size;
  if (index == count || codePoint < read32(group)) return no_glyph;
  return read32(group + 8) + (codePoint - read32(group));
}

int SfntFontC::getAdvance(std::uint16_t glyph) const {
  if (glyph >= glyphCount_) return 0;
  // Glyphs after the last listed advance share it.
  std::uint32_t const entry = std::min<std::uint32_t>(glyph, advanceCount_ - 1);
  return int(read16(advances_.offset + entry * 4));
}

int SfntFontC::getOverhang(std::uint16_t glyph) const {
  std::size_t const entry = placesAreLong_ ? 4 : 2;
  if (glyph >= glyphCount_ || outlinePlaces_.length < (std::size_t(glyph) + 2) * entry) return 0;
  auto const placeOf = [&](std::size_t index) {
    std::size_t const at = outlinePlaces_.offset + index * entry;
    return placesAreLong_ ? std::size_t(read32(at)) : std::size_t(read16(at)) * 2;
  };
  constexpr std::size_t header_size = 10, right_edge = 6;
  std::size_t const place = placeOf(glyph);
  // A glyph without ink has no outline.
  if (placeOf(std::size_t(glyph) + 1) <= place || place + header_size > outlines_.length) return 0;
  int const right = static_cast<std::int16_t>(read16(outlines_.offset + place + right_edge));
  return std::max(0, right - getAdvance(glyph));
}

}  // namespace zolt::surfaces
