#pragma once

#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/surfaces/typeset/path.h"

namespace zolt::surfaces {

enum BracketSideE { BRACKET_OPEN = 0, BRACKET_CLOSE = 1 };

/// Where a parenthesis is used.
enum BracketPlaceE {
  BRACKET_IN_ROW = 0,     ///< an item of a row, which leaves a gap after its texts but none before them
  BRACKET_AROUND_BOX = 1  ///< tight around a content box
};

/// Appends the outline of a parenthesis in a cell of `metrics[1]` by `height` units with the top-left corner
/// (x, y), or nothing when the height is not above 0. Low parentheses have the proportions of the letter;
/// higher ones bend further out and grow stronger, and above a certain height only their ends bend, around a
/// straight middle. Inside and outside, the ink keeps the same distance on both sides of a pair.
void appendBracket(PathC& path, BracketSideE side, BracketPlaceE place, double x, double y, double height,
                   FontSizeS const& size);

}  // namespace zolt::surfaces
