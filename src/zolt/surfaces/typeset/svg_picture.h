#pragma once

#include <string>

#include "zolt/surfaces/typeset/drawing.h"
#include "zolt/surfaces/typeset/picture_options.h"

namespace zolt::surfaces {

/// Everything that goes into one picture. The frame is the area that it shows, in surface units.
struct PictureJobS {
  DrawingC const& drawing;
  GlyphSourceABC const& glyphs;
  PictureOptionsS const& options;
  double left, top, width, height;
};

/// The picture of the area from (0, 0) to (width, height), with the margin of the options around it.
PictureJobS makeJob(DrawingC const& drawing, GlyphSourceABC const& glyphs, PictureOptionsS const& options,
                    long width, long height);

/// The colour of what is drawn in an ink.
inline ColourS inkColour(ColourS const& foreground, InkE ink) {
  return {foreground.red, foreground.green, foreground.blue, foreground.opacity * getInkStrength(ink)};
}

/// UTF-8 that every format can hold, without control characters; unpaired surrogates are replaced.
std::string toCleanUtf8(oss::wstring const& text);

/// Writes the picture as a complete SVG document whose user units are surface units.
std::string writeSvg(PictureJobS const& job);

}  // namespace zolt::surfaces
