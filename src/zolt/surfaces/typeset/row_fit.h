#pragma once

#include "zolt/surfaces/typeset/path.h"

namespace zolt::surfaces {

/// Letters larger than this, in pixels per em, look the same with and without `fitToRows`.
constexpr double largest_fitted_em = 48;

/// Moves the horizontal strokes of a letter onto whole rows of pixels, so that signs and the feet of letters
/// are as crisp as the bars beside them; nothing moves sideways. `outline` has its origin on the baseline and
/// y growing downwards; `scale` is pixels per unit, and the result is in pixels. The baseline must be painted
/// at a whole pixel.
PathC fitToRows(PathC const& outline, double unitsPerEm, double scale);

}  // namespace zolt::surfaces
