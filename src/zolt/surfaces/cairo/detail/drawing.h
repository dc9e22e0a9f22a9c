#pragma once

#include <string>
#include <vector>

#include "zolt/surfaces/cairo/cairo_graphics.h"

// Internal to the Cairo library.

namespace zolt::surfaces {

// Letters of the default zoom, which are 12 surface units.
constexpr double pixels_per_em = 12 * PictureOptionsS::default_zoom;

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

using DrawingT = std::vector<DrawingItemS>;

class CairoFacesC;

/// Everything that goes into one picture. The frame is the area that it shows, in surface units.
struct PictureJobS {
  DrawingT const& drawing;
  CairoFacesC const& faces;
  PictureOptionsS const& options;
  double left, top, width, height;
};

inline ColourS inkColour(ColourS const& foreground, InkE ink) {
  return {foreground.red, foreground.green, foreground.blue, foreground.opacity * getInkStrength(ink)};
}

/// UTF-8 that every format can hold, without control characters; unpaired surrogates are replaced.
std::string toCleanUtf8(oss::wstring const& text);

}  // namespace zolt::surfaces
