#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "zolt/surfaces/typeset/font_set.h"
#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::surfaces {

enum DrawingItemE { ITEM_GLYPHS, ITEM_FILL, ITEM_STROKE, ITEM_RULE };

/// One primitive of a drawing, in surface units.
struct DrawingItemS {
  DrawingItemE kind = ITEM_GLYPHS;
  InkE ink = INK_TEXT;
  PathC path{};
  double thickness = 0;
  RuleS rule{};
  GlyphRunS run{};                     // its glyphs are in `glyphs`
  std::vector<PlacedGlyphS> glyphs{};  // of a run
};

/// What was drawn, kept for pictures: the four primitives of `TypesetGraphicsABC` append to it.
class DrawingC {
 public:
  void addGlyphs(GlyphRunS const& run) {
    items_.push_back({ITEM_GLYPHS, INK_TEXT, {}, 0, {}, run, {run.glyphs, run.glyphs + run.count}});
    items_.back().run.glyphs = nullptr;
  }
  void addFill(PathC const& path, InkE ink) { items_.push_back({ITEM_FILL, ink, path}); }
  void addStroke(PathC const& path, double thickness, InkE ink) {
    items_.push_back({ITEM_STROKE, ink, path, thickness});
  }
  void addRule(RuleS const& rule, InkE ink) { items_.push_back({ITEM_RULE, ink, {}, 0, rule}); }
  void clear() { items_.clear(); }

  std::vector<DrawingItemS> const& getItems() const { return items_; }

 private:
  std::vector<DrawingItemS> items_;
};

/// One step of a glyph's outline in font units, y growing downwards: 'M', 'L', 'Q' or 'C' to the last of its
/// points, or 'Z'.
struct OutlineStepS {
  char verb;
  int count;
  long x[3], y[3];
};
using OutlineT = std::vector<OutlineStepS>;

/// Where a picture gets the outlines of its letters from.
class GlyphSourceABC {
 public:
  virtual ~GlyphSourceABC() = default;

  virtual FontSetC const& getFonts() const = 0;
  /// The outline of a glyph; empty for one without ink. The reference is good as long as this object.
  virtual OutlineT const& outline(unsigned face, std::uint16_t glyph) const = 0;
  /// A font file with the glyphs of at least these characters. Unless overridden it is the whole file.
  virtual std::string makeSubset(unsigned face, std::set<char32_t> const& /*characters*/) const {
    return getFonts().getFont(face).getBytes();
  }
};

}  // namespace zolt::surfaces
