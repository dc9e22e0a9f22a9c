#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "zolt/surfaces/typeset/font_set.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// Widths inside a text are whole millionths of an em, so that every machine adds them up to the same result.
constexpr int em_parts = 1000000;

enum CharClassE : std::uint8_t {
  CLASS_ORDINARY,
  CLASS_STOP,  ///< looks ordinary, but every name and number ends before it
  CLASS_LETTER,
  CLASS_DIGIT,
  CLASS_PLUS_MINUS,  ///< between two operands, or in front of one
  CLASS_BINARY,
  CLASS_RELATION,
  CLASS_COLON,  ///< the head of a relation written with two characters
  CLASS_COMMA,
  CLASS_OPEN,
  CLASS_SPACE,
  CLASS_PRIME,
  CLASS_INDEX_MARK,  ///< the underscore
  CLASS_LOWERED      ///< a character that is an index by itself
};

struct FaceGlyphS {
  static constexpr std::uint8_t no_face = 0xFF;

  std::uint8_t face = no_face;
  std::uint16_t glyph = SfntFontC::no_glyph;
  char32_t codePoint = 0;  ///< what is shown, which need not be the character of the text
  int advance = 0;         ///< in `em_parts`
  int overhang = 0;        ///< how far the ink reaches beyond the advance, in `em_parts`
};

/// How one character looks. A character that no face has keeps the advance of the box that is drawn in its
/// place.
struct CharLookS {
  CharClassE charClass = CLASS_ORDINARY;
  FaceGlyphS upright;
  FaceGlyphS italic;   ///< of letters; otherwise the same as `upright`
  FaceGlyphS word;     ///< of letters next to others; otherwise the same as `upright`
  FaceGlyphS overlay;  ///< a second glyph at the same place, if it has a face
};

/// Looks up characters in the faces, each one only once.
class CharTableC {
 public:
  explicit CharTableC(oss::PointerTC<FontSetC> fonts) : fonts_(fonts) {}

  FontSetC const& getFonts() const { return *fonts_; }
  CharLookS find(char32_t codePoint);

 private:
  static constexpr unsigned page_size = 256;
  using PageT = std::array<std::optional<CharLookS>, page_size>;

  CharLookS make(char32_t codePoint) const;
  FaceGlyphS findGlyph(char32_t codePoint, unsigned firstFace) const;
  [[nodiscard]] bool findGlyphIn(unsigned face, char32_t codePoint, FaceGlyphS& found) const;

  oss::PointerTC<FontSetC> fonts_;
  std::array<std::unique_ptr<PageT>, 0x10000 / page_size> pages_;
};

}  // namespace zolt::surfaces
