#include "zolt/surfaces/typeset/detail/char_table.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/oss/code_point.h"
#include "zolt/surfaces/typeset/detail/letter_style.h"

namespace zolt::surfaces {

namespace common = math::common;

namespace {

constexpr int missing_advance = em_parts / 2;
/// The placeholder of an empty place, and the width of the place.
constexpr char32_t slot = 0x25CF;
constexpr int slot_advance = em_parts * 6 / 10;
/// Wider advances, which only a damaged font has, would overflow and are cut to this.
constexpr std::int64_t widest_advance = 100 * std::int64_t{em_parts};
/// Primes are as small and as high as exponents.
constexpr int prime_percent = 75;

/// The stroke that KaTeX Main lays over a sign to negate it.
constexpr char32_t negating_stroke = 0xE020;

/// π as a letter of a face.
constexpr char32_t printed_pi = 0x3C0;

CharClassE classify(char32_t c) {
  switch (c) {
    case ' ':
    case 0xA0:
      return CLASS_SPACE;
    case '!':
    case ')':
    case ']':
    case '}':
    case '^':
    case '`':
    case common::pi_sign:
      return CLASS_STOP;
    case '(':
    case '[':
    case '{':
      return CLASS_OPEN;
    case ',':
    case ';':
      return CLASS_COMMA;
    case ':':
      return CLASS_COLON;
    case '.':
      return CLASS_DIGIT;
    case '\'':
    case 0x2032:
      return CLASS_PRIME;
    case '+':
    case '-':
    case 0xB1:
    case common::en_dash:
    case common::minus_sign:
    case 0x2213:
      return CLASS_PLUS_MINUS;
    case '*':
    case 0xB7:
    case 0xD7:
    case 0xF7:
    case 0x2217:
    case 0x2218:
    case common::times_sign:
    case 0x22C5:
      return CLASS_BINARY;
    case '<':
    case '=':
    case '>':
    case common::store_sign:
    case 0x2208:
    case 0x2248:
    case common::not_equal_sign:
    case 0x2261:
    case common::less_or_equal_sign:
    case common::greater_or_equal_sign:
    case 0x2190:
    case 0x2192:
    case 0x21D2:
    case 0x21D4:
      return CLASS_RELATION;
    default:
      break;
  }
  if (c >= '0' && c <= '9') return CLASS_DIGIT;
  return LetterStyleC::isLetter(c) ? CLASS_LETTER : CLASS_ORDINARY;
}

/// The printed form of a sign that a keyboard sends.
char32_t showAs(char32_t c) {
  constexpr char32_t dot = 0x22C5, prime = 0x2032;
  switch (c > 0xFFFF ? c : common::foldLookAlike(char16_t(c), common::LOOK_ALIKE_DRAWN)) {
    case '-':
      return common::minus_sign;
    case '*':
      return dot;
    case '\'':
      return prime;
    case common::pi_sign:
      return printed_pi;
    default:
      return c;
  }
}

}  // namespace

CharLookS CharTableC::find(char32_t codePoint) {
  if (codePoint > 0xFFFF) return make(codePoint);
  std::unique_ptr<PageS>& page = pages_[codePoint / page_size];
  if (!page) page = std::make_unique<PageS>();
  std::size_t const index = codePoint % page_size;
  if (!page->known[index]) {
    page->looks[index] = make(codePoint);
    page->known[index] = true;
  }
  return page->looks[index];
}

CharLookS CharTableC::make(char32_t codePoint) const {
  CharLookS look;
  look.charClass = classify(codePoint);
  char32_t const shown = showAs(codePoint);
  look.upright = findGlyph(shown, FACE_MAIN);
  if (codePoint == slot) look.upright.advance = slot_advance;
  if (look.charClass == CLASS_PRIME) look.upright.advance = look.upright.advance * prime_percent / 100;
  if (shown == common::not_equal_sign && look.upright.face != FACE_MAIN) {
    FaceGlyphS stroke;
    if (findGlyphIn(FACE_MAIN, negating_stroke, stroke)) {
      look.upright = findGlyph('=', FACE_MAIN);
      look.overlay = stroke;
    }
  }
  look.italic = LetterStyleC::isItalicLetter(shown) ? findGlyph(shown, FACE_MATH) : look.upright;
  return look;
}

FaceGlyphS CharTableC::findGlyph(char32_t codePoint, unsigned first) const {
  FaceGlyphS found;
  unsigned const second = first == FACE_MAIN ? FACE_MATH : FACE_MAIN;
  bool here = findGlyphIn(first, codePoint, found) || findGlyphIn(second, codePoint, found);
  for (unsigned face = FACE_FALLBACK; !here && face < fonts_->getFaceCount(); ++face) {
    here = findGlyphIn(face, codePoint, found);
  }
  if (!here) found = {FaceGlyphS::no_face, SfntFontC::no_glyph, codePoint, missing_advance};
  return found;
}

bool CharTableC::findGlyphIn(unsigned face, char32_t codePoint, FaceGlyphS& found) const {
  if (oss::isSurrogate(codePoint)) return false;
  SfntFontC const& font = fonts_->getFont(face);
  std::uint16_t const glyph = font.findGlyph(codePoint);
  if (glyph == SfntFontC::no_glyph) return false;
  auto const toParts = [&](int units) {
    return int(std::min(std::int64_t(units) * em_parts / font.getUnitsPerEm(), widest_advance));
  };
  found = {std::uint8_t(face), glyph, codePoint, toParts(font.getAdvance(glyph)),
           toParts(font.getOverhang(glyph))};
  return true;
}

}  // namespace zolt::surfaces
