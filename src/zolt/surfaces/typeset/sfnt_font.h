#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zolt::surfaces {

/// The measures of one TrueType or OpenType font, read from the bytes of its file: which glyph shows a
/// character, and how far it advances. Unhinted, in font units, so that every host gets the same numbers.
///
/// Any bytes are accepted: missing parts and offsets outside the file make `parse` fail or are read as "no
/// glyph".
class SfntFontC {
 public:
  static constexpr std::uint16_t no_glyph = 0;

  /// Takes over the bytes of a font file. Returns false, with `error` saying what is wrong, when it is no
  /// usable font; the object then has no glyphs.
  [[nodiscard]] bool parse(std::string bytes, std::string& error);

  std::string const& getBytes() const { return bytes_; }
  /// Font units per em, 16 to 16384.
  int getUnitsPerEm() const { return unitsPerEm_; }
  /// The glyph of a code point, `no_glyph` when the font has none.
  std::uint16_t findGlyph(char32_t codePoint) const;
  /// Advance width of a glyph in font units; 0 when there is no such glyph.
  int getAdvance(std::uint16_t glyph) const;
  /// How far the ink of a glyph reaches beyond its advance, in font units; 0 when it does not, or when the
  /// font stores its outlines in an unsupported form.
  int getOverhang(std::uint16_t glyph) const;

 private:
  struct TableS {
    std::size_t offset = 0, length = 0;
  };

  [[nodiscard]] bool findTable(char const* tag, TableS& table) const;
  [[nodiscard]] bool readTables(std::string& error);
  [[nodiscard]] bool chooseCharacterMap();
  std::uint32_t read16(std::size_t offset) const;
  std::uint32_t read32(std::size_t offset) const;
  std::uint32_t findInSegments(char32_t codePoint) const;
  std::uint32_t findInGroups(char32_t codePoint) const;

  std::string bytes_;
  TableS advances_;
  TableS map_;
  TableS outlines_;
  TableS outlinePlaces_;
  bool mapHasGroups_ = false;
  bool placesAreLong_ = false;
  int unitsPerEm_ = 1000;
  std::uint32_t glyphCount_ = 0;
  std::uint32_t advanceCount_ = 0;
};

}  // namespace zolt::surfaces
