#pragma once

#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/surfaces/typeset/path.h"
#include "zolt/surfaces/typeset/rule.h"

// Internal to the typeset library: the printed forms of the signs of constructs, in the boxes of
// `GraphicsABC::drawSign`.

namespace zolt::surfaces {

/// The thickness of fraction bars and other plain lines at a font size.
inline double getRuleThickness(FontSizeS const& size) { return 0.046 * size.em; }

void appendIntegral(PathC& path, double x, double y, double width, double height);

void appendSum(PathC& path, double x, double y, double width, double height);

void appendProduct(PathC& path, double x, double y, double width, double height);

enum SideE { SIDE_LEFT, SIDE_RIGHT };

/// "[" on the left side, "]" on the right.
void appendSquareBracket(PathC& path, SideE side, double x, double y, double width, double height,
                         FontSizeS const& size);
/// "{" and "}".
void appendBrace(PathC& path, SideE side, double x, double y, double width, double height,
                 FontSizeS const& size);

// Above a row.
void appendHat(PathC& path, double x, double y, double width, double height, FontSizeS const& size);
void appendArrow(PathC& path, double x, double y, double width, double height, FontSizeS const& size);

/// A radical without its bar, which starts at the head of the stroke. `tick`: how far right of `x` the stroke
/// is; with an index above it, the tick is only as high as it is wide.
void appendRadical(PathC& path, double x, double y, double height, double tick, bool hasIndex,
                   FontSizeS const& size);

}  // namespace zolt::surfaces
