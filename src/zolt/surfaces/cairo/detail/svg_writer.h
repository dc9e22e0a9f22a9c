#pragma once

#include <string>

#include "zolt/surfaces/cairo/detail/drawing.h"

// Internal to the Cairo library.

namespace zolt::surfaces {

/// Writes the drawing as a complete SVG document whose user units are surface units.
std::string writeSvg(PictureJobS const& job);

}  // namespace zolt::surfaces
