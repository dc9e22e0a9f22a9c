#pragma once

#include <cairo.h>

#include "zolt/surfaces/cairo/detail/cairo_faces.h"
#include "zolt/surfaces/cairo/detail/drawing.h"

// Internal to the Cairo library.

namespace zolt::surfaces {

enum PaintTargetE {
  PAINT_PIXELS = 0,  ///< bars on whole pixels, letters at their exact places
  PAINT_PAPER = 1    ///< letters as text, so that it can be selected and searched
};

/// Paints a drawing. The context must already map surface units to the target.
void paintDrawing(cairo_t* context, CairoFacesC const& faces, DrawingT const& drawing,
                  ColourS const& foreground, PaintTargetE target);

}  // namespace zolt::surfaces
