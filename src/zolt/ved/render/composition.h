#pragma once

#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

using oss::wstring;

/// Text that is being composed at a place of a formula: by an input method, or as the beginning of a name
/// that is going to be completed. It is measured and drawn as if it were between the characters there, but it
/// is no part of the tree, so that no expression, copy or history has it.
struct CompositionS {
  PlaceS place;  ///< null: nothing is being composed
  wstring text;
  unsigned long caret = 0;  ///< a position in the text

  bool isIn(Node4C const& node) const { return place.node == &node; }
};

/// The width of the first `count` characters of a text node as it is shown, those of the composition included
/// (null: none), in the font that is current. A larger count than there are characters means all of them.
long measureShown(Node4C const& text, unsigned long count, CompositionS const* composition,
                  GraphicsABC const& graphics);

/// Draws such a text node with its top-left corner at (x, y).
void drawShown(Node4C const& text, TextRoleE role, CompositionS const& composition, long x, long y,
               GraphicsABC const& graphics);

}  // namespace zolt::math::ved
