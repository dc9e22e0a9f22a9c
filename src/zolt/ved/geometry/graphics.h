#pragma once

#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

/// The drawing surface that a host supplies: it measures and draws text, and draws lines and parentheses.
///
/// All positions and sizes are in surface units (signed 32-bit values); x grows right, y grows down. The one
/// piece of state is the current font, set by `selectFont` before anything of a node is measured or drawn.
/// A layout is valid only as long as the surface answers the same for the same font depth. No operation
/// reports failure: a surface that cannot draw draws nothing. All calls come from the thread that calls the
/// view.
class GraphicsABC : public oss::RefCountedBC {
 public:
  GraphicsABC() = default;
  ~GraphicsABC() override;

  /// Asks the host to repaint the view soon. Must neither paint nor throw from inside the call; the view may
  /// be looked at, and refuses to be changed.
  virtual void invalidate() const = 0;

  /// Measures `text` in the current font: advance width, height, and distance from its top to its axis.
  virtual void getTextExtent(oss::wstring const& text, long& width, long& height, long& midHeight) const = 0;
  virtual long getTextWidth(oss::wstring const& text) const = 0;
  virtual long getTextHeight(oss::wstring const& text) const = 0;
  virtual long getTextMidHeight(oss::wstring const& text) const = 0;

  /// A spacing metric of the current font: 0 the horizontal gap between items, 1 the width of a parenthesis
  /// cell, 2 how far a parenthesis overhangs its content above and below, 3 the margin around bars and
  /// radicals.
  virtual long getMetric(long index) const = 0;

  /// Draws `text` with the top-left corner of its box at (x, y).
  virtual void drawText(oss::wstring const& text, long x, long y) const = 0;
  virtual void drawLine(long x1, long y1, long x2, long y2) const = 0;
  /// Covers the units x to x + length - 1.
  virtual void drawHorizontalLine(long x, long y, long length) const = 0;
  /// Covers the units y to y + length - 1.
  virtual void drawVerticalLine(long x, long y, long length) const = 0;

  /// Draws "(" in the cell of width `getMetric(1)` whose left edge is x. `automatic`: supplied by the editor
  /// rather than typed; the two styles should differ visibly.
  virtual void drawOpenBracket(long x, long y, long height, bool automatic) const = 0;
  /// Draws ")" in the cell of width `getMetric(1)` whose right edge is x.
  virtual void drawCloseBracket(long x, long y, long height, bool automatic) const = 0;
  /// Draws "(" in the cell just left of the content box and ")" in the cell just right of it.
  virtual void drawBracketPair(long x, long y, long width, long height, bool automatic) const = 0;

  /// Reserved; never called by the component.
  virtual void reserved() const {}

  /// Makes the font of a depth current: 0 is the normal size, each level above is smaller.
  virtual void selectFont(unsigned long fontDepth) const = 0;
};

}  // namespace zolt::math::ved
