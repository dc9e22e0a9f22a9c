#pragma once

#include <string>

#include "zolt/surfaces/cairo/detail/cairo_faces.h"
#include "zolt/surfaces/cairo/detail/drawing.h"

// Internal to the Cairo library.

namespace zolt::surfaces {

/// Writes the drawing as a complete SVG document whose user units are surface units.
std::string writeSvg(DrawingT const& drawing, PictureFrameS const& frame, PictureOptionsS const& options,
                     FontSetC const& fonts, CairoFacesC const& faces);

}  // namespace zolt::surfaces
