#pragma once

#include <cairo.h>

#include "zolt/surfaces/typeset/svg_picture.h"

// Internal to the Cairo library.

namespace zolt::surfaces {

class CairoFacesC;

enum PaintTargetE {
  PAINT_PIXELS = 0,  ///< bars on whole pixels, letters at their exact places
  PAINT_PAPER = 1    ///< letters as text, so that it can be selected and searched
};

/// Paints the drawing of a picture. The context must already map surface units to the target.
void paintDrawing(cairo_t* context, PictureJobS const& job, CairoFacesC const& faces, PaintTargetE target);

}  // namespace zolt::surfaces
