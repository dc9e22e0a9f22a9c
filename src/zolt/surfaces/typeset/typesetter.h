#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"
#include "zolt/surfaces/typeset/font_set.h"
#include "zolt/ved/geometry/graphics.h"

namespace zolt::surfaces {

/// How the exponent of a number such as "6.02e23" is shown; the text stays as it is.
enum NumberLookE {
  NUMBERS_AS_TYPED = 0,
  NUMBERS_WITH_POWERS = 1  ///< 6.02·10²³
};

enum ShapeE {
  SHAPE_GLYPH = 0,
  SHAPE_MISSING = 1  ///< a character that no face has
};

/// One item to paint for a text. Positions are in surface units from the left edge of the text box and from
/// the baseline.
struct PlacedGlyphS {
  ShapeE shape;
  unsigned face;        ///< of a glyph
  std::uint16_t glyph;  ///< its index in the font file
  char32_t codePoint;   ///< the character that the glyph shows, for surfaces that draw by characters
  double x;             ///< of the glyph's origin, or the left edge of a missing character
  double width;         ///< the advance
  double overhang;      ///< how far the ink reaches beyond it
  double em;            ///< size of the letters
  double rise;          ///< how far the origin is above the baseline
};

/// A text as it is painted.
struct PlacedTextS {
  std::vector<PlacedGlyphS> glyphs;  ///< from left to right
  long width;                        ///< as `TypesetterC::measure` says
  long indexWidth;                   ///< as `TypesetterC::measureIndex` says
};

/// Decides how texts look and how wide they are. Every surface asks this class, so that all lay a formula out
/// alike. Letters are italic; digits, signs and the names of functions are upright; signs have space around
/// them. A name of several letters is set as a word, closer than the letters of a product. What follows the
/// first underscore of a name is its index, below the line; the underscore is shown only without one.
///
/// The width of a text is at least that of each of its beginnings: what a character adds depends only on the
/// characters before it. That is why a sign's space is on both sides of the sign itself, and why a name such
/// as "sin" is as wide upright as its letters were while it was typed.
///
/// A sign that can be a prefix ("+", "−", "±") has no space around it after another sign, "(" or ","; first
/// in a text it may be either, and gets some. Within that room the role of the text places it: in the middle
/// when the text follows an item, otherwise close to its operand as a prefix. The signs at both ends of a
/// text take the gap that a row leaves between its items into account, so that they too are in the middle.
class TypesetterC final : public oss::RefCountedBC {
 public:
  /// `fonts` must not be null.
  explicit TypesetterC(oss::PointerTC<FontSetC> fonts);
  ~TypesetterC() override;
  TypesetterC(TypesetterC const&) = delete;
  TypesetterC& operator=(TypesetterC const&) = delete;

  FontSetC const& getFonts() const;

  /// Makes a run of letters upright where it is exactly `name`. Widths change, so everything that was
  /// measured has to be laid out again.
  void addUprightName(oss::wstring const& name);

  /// Whether an index is in the text, which then reaches lower.
  bool hasIndex(oss::wstring const& text) const;
  /// How wide the index is that the text ends with, in surface units; 0: there is none.
  long measureIndex(oss::wstring const& text, unsigned long depth) const;
  /// Chooses how exponents of numbers look, as they are typed at first. Widths change, too.
  void setNumberLook(NumberLookE look);

  /// Width in surface units.
  long measure(oss::wstring const& text, unsigned long depth) const;

  /// The blank before the sign that begins a row with this text, as `place` places it; 0 for another text.
  double findPrefixRoom(oss::wstring const& text, unsigned long depth) const;

  /// What is painted of a text; never null. The texts that were painted last are kept, since a formula is
  /// painted again and again.
  std::shared_ptr<PlacedTextS const> place(oss::wstring const& text, unsigned long depth,
                                           math::ved::TextRoleE role) const;

 private:
  PlacedTextS makePlaced(oss::wstring const& text, unsigned long depth, math::ved::TextRoleE role) const;

  struct StateS;
  std::unique_ptr<StateS> state_;
};

}  // namespace zolt::surfaces
