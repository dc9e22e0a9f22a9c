#include "zolt/surfaces/typeset/detail/char_table.h"

#include <algorithm>
#include <string_view>

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

/// Signs that such a stroke negates beside "=".
constexpr char32_t element_of = 0x2208, not_in = 0x2209;

/// π as a letter of a face.
constexpr char32_t printed_pi = 0x3C0;

/// Characters that are indices, and what they lower.
constexpr std::u16string_view indices = u"₀₁₂₃₄₅₆₇₈₉₊₋₌₍₎ₐₑₒₓₔₕₖₗₘₙₚₛₜᵢᵣᵤᵥⱼ";
constexpr std::u16string_view lowered = u"0123456789+-=()aeox\u0259hklmnpstiruvj";

/// The sets of numbers, and the capitals that have doubled strokes in a face of their own.
constexpr std::u16string_view doubled = u"\u2102\u210D\u2115\u2119\u211A\u211D\u2124";
constexpr std::u16string_view capitals = u"CHNPQRZ";

struct ClassS {
  CharClassE charClass;
  std::u16string_view characters;
};

constexpr ClassS classes[] = {
    {CLASS_SPACE, u" \u00A0"},
    {CLASS_STOP, u"!)]}^`\u0960"},
    {CLASS_OPEN, u"([{"},
    {CLASS_COMMA, u",;"},
    {CLASS_COLON, u":"},
    {CLASS_DIGIT, u".0123456789"},
    {CLASS_PRIME, u"'\u2032"},
    {CLASS_INDEX_MARK, u"_"},
    {CLASS_LOWERED, indices},
    {CLASS_PLUS_MINUS, u"+-\u00B1\u2013\u2212\u2213\u2216\u2229\u222A\u2295"},
    {CLASS_BINARY, u"*\u00B7\u00D7\u00F7\u2217\u2218\u2219\u2297\u22C5"},
    {CLASS_RELATION,
     u"<=>\u00BB\u2190\u2192\u21A6\u21D2\u21D4\u2208\u2209\u221D\u2225\u2248\u2260\u2261\u2264"
     u"\u2265\u2223\u223C\u2243\u2245\u226A\u226B\u2282\u2283\u2286\u2287\u22A5"},
};

CharClassE classify(char32_t c) {
  for (ClassS const& known : classes) {
    if (c <= 0xFFFF && known.characters.find(char16_t(c)) != std::u16string_view::npos)
      return known.charClass;
  }
  return LetterStyleC::isLetter(c) ? CLASS_LETTER : CLASS_ORDINARY;
}

/// The printed form of a sign that a keyboard sends, or that a textbook writes with another.
char32_t showAs(char32_t c) {
  constexpr char32_t dot = 0x22C5, prime = 0x2032, arrow = 0x2192;
  std::size_t const index = c > 0x7F && c <= 0xFFFF ? indices.find(char16_t(c)) : indices.npos;
  if (index != indices.npos) c = lowered[index];
  switch (c > 0xFFFF ? c : common::foldLookAlike(char16_t(c), common::LOOK_ALIKE_DRAWN)) {
    case '-':
      return common::minus_sign;
    case '*':
      return dot;
    case '\'':
      return prime;
    case common::pi_sign:
      return printed_pi;
    case common::store_sign:
      return arrow;
    default:
      return c;
  }
}

}  // namespace

CharLookS CharTableC::find(char32_t codePoint) {
  if (codePoint > 0xFFFF) return make(codePoint);
  std::unique_ptr<PageT>& page = pages_[codePoint / page_size];
  if (!page) page = std::make_unique<PageT>();
  std::optional<CharLookS>& look = (*page)[codePoint % page_size];
  if (!look) look = make(codePoint);
  return *look;
}

CharLookS CharTableC::make(char32_t codePoint) const {
  CharLookS look;
  look.charClass = classify(codePoint);
  char32_t const shown = showAs(codePoint);
  look.upright = findGlyph(shown, FACE_MAIN);
  std::size_t const capital = shown <= 0xFFFF ? doubled.find(char16_t(shown)) : doubled.npos;
  if (capital != doubled.npos && fonts_->getDoubledFace() != FACE_MAIN) {
    static_cast<void>(findGlyphIn(fonts_->getDoubledFace(), capitals[capital], look.upright));
  }
  if (codePoint == slot) look.upright.advance = slot_advance;
  if (look.charClass == CLASS_PRIME) look.upright.advance = look.upright.advance * prime_percent / 100;
  char32_t const negated = shown == common::not_equal_sign ? U'=' : shown == not_in ? element_of : 0;
  if (negated != 0 && look.upright.face != FACE_MAIN) {
    FaceGlyphS stroke;
    if (findGlyphIn(FACE_MAIN, negating_stroke, stroke)) {
      look.upright = findGlyph(negated, FACE_MAIN);
      look.overlay = stroke;
    }
  }
  if (LetterStyleC::isItalicLetter(shown)) {
    look.italic = findGlyph(shown, FACE_MATH);
    if (!findGlyphIn(fonts_->getWordFace(), shown, look.word)) look.word = look.italic;
    if (look.charClass == CLASS_LOWERED) look.upright = look.italic;
  } else {
    look.italic = look.word = look.upright;
  }
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
