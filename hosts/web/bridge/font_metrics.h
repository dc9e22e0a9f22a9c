#pragma once

#include <vector>

#include "zolt/surfaces/typeset/font_set.h"

namespace zolt::web {

/// The measures of the faces, without their outlines: what hosts/web/fonts/make_fonts.py makes of the
/// installed font files.
std::vector<surfaces::FontSetC::FileS> getFontMetrics();

}  // namespace zolt::web
