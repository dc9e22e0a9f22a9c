#pragma once

#include <optional>
#include <vector>

#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/geometry/point.h"
#include "zolt/ved/geometry/rectangle.h"

namespace zolt::math::ved {

/// What a construct draws around or beside its rows.
enum SignE {
  SIGN_RADICAL = 0,          ///< the tick, the stroke and the bar of a square root
  SIGN_INDEXED_RADICAL = 1,  ///< the same for a root with an index above the tick
  SIGN_INTEGRAL = 2,
  SIGN_SUM = 3,  ///< one unit higher than wide
  SIGN_ABSOLUTE_BARS = 4,
  SIGN_CEILING_BARS = 5,
  SIGN_FLOOR_BARS = 6,
  SIGN_NORM_BARS = 7,      ///< two bars on each side
  SIGN_PRODUCT = 8,        ///< one unit higher than wide, like the sum
  SIGN_OPEN_SQUARE = 9,    ///< "[", in a cell as wide as that of a parenthesis; so are the next three
  SIGN_CLOSE_SQUARE = 10,  ///< "]"
  SIGN_OPEN_BRACE = 11,    ///< "{"
  SIGN_CLOSE_BRACE = 12,   ///< "}"
  SIGN_HAT = 13,           ///< above a row, as wide as the box; so are the next two
  SIGN_ARROW = 14,         ///< to the right
  SIGN_DOT = 15            ///< in the middle of the box
};

/// How a stroke goes through its points.
enum StrokeE {
  STROKE_WITH_CORNERS = 0,  ///< straight from point to point
  STROKE_SMOOTH = 1         ///< as a curve: a brace, an arrow's head
};

/// The role of a text in its formula.
enum TextRoleE {
  TEXT_STARTS_ROW = 0,        ///< the first item of a row or of a bracketed group
  TEXT_FOLLOWS_ITEM = 1,      ///< any other item of a row
  TEXT_STARTS_EXPONENT = 2,   ///< the first item of an exponent, at the bottom of its row
  TEXT_IS_UNIT = 3,           ///< a whole exponent: "o" for degrees or "r" for radians
  TEXT_IS_SLOT = 4,           ///< the placeholder of an empty place
  TEXT_IS_EXPONENT_SLOT = 5,  ///< the placeholder of a whole exponent
  TEXT_IS_INTEGRAL_D = 6,     ///< the "d" between an integrand and its variable
  TEXT_IS_UPPER_D = 7,        ///< the "d" above the bar of a derivative
  TEXT_IS_LOWER_D = 8,        ///< the "d" below that bar, before the variable
  TEXT_FOLLOWS_BRACKET = 9    ///< an item right after a closing bracket, without a gap between the two
};

/// The drawing surface that a host supplies: it measures and draws text, and draws lines and parentheses.
///
/// All positions and sizes are in surface units (signed 32-bit values); x grows right, y grows down. The only
/// state is the current font, set by `selectFont` before anything of a node is measured or drawn. A layout is
/// valid only as long as the surface answers the same for the same font depth. No operation reports failure:
/// a surface that cannot draw draws nothing. All calls come from the thread that calls the view.
///
/// The members that have bodies here are for surfaces that need more information; a surface that forwards
/// calls to another surface has to forward them too. What a surface may do to the view that calls it is in
/// zolt/ved/view/view_hold.h.
class GraphicsABC : public oss::RefCountedBC {
 public:
  /// The length of a serif of ceiling and floor bars.
  static constexpr long serif_length = 5;
  /// How far the two bars on one side of a norm are apart.
  static constexpr long norm_bar_distance = 3;

  /// Asks the host to repaint the view soon. The implementation must neither paint nor throw; it may query
  /// the view, which refuses to be changed during the call.
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

  /// Makes the font of a depth current: 0 is the normal size, and each deeper level is smaller.
  virtual void selectFont(unsigned long fontDepth) const = 0;

  /// The part of the surface that is to be painted: drawing leaves out most of what lies outside. No value
  /// means that everything is painted. It is queried once for each drawing.
  ///
  /// A text, bracket or sign may paint outside its box by as much as the height of a line in the largest
  /// font; everything of it that lies in the clip box is still drawn.
  virtual std::optional<RectangleS> getClipBox() const { return std::nullopt; }

  /// Draws `text` like `drawText`, and receives its role. The text left of an exponent, empty or not, is
  /// drawn just before the exponent. Unless overridden it calls `drawText`.
  virtual void drawTextAs(TextRoleE role, oss::wstring const& text, long x, long y) const;

  /// The width of text that is being composed in the formula (zolt/ved/render/composition.h), in the current
  /// font. Such text can have characters that no formula has. Unless overridden it is measured and drawn like
  /// any other.
  virtual long getComposedWidth(oss::wstring const& text) const { return getTextWidth(text); }
  virtual void drawComposed(oss::wstring const& text, long x, long y) const { drawText(text, x, y); }

  /// The width of the index that `text` ends with, in the current font: an exponent on the text is placed
  /// above it. Unless overridden no text has an index, and exponents are right of their bases.
  virtual long getIndexWidth(oss::wstring const&) const { return 0; }

  /// Draws a sign in the box (x, y, width, height). Unless overridden it draws the sign with lines.
  virtual void drawSign(SignE sign, long x, long y, long width, long height) const;

  /// Draws one stroke through the units at `points`, for signs that no other member has. Unless overridden it
  /// draws straight lines.
  virtual void drawStroke(StrokeE kind, std::vector<PointS> const& points) const;

  /// Tells the text that begins what the next bracket, pair of brackets, sign or horizontal line encloses or
  /// is next to, right before that is drawn: a minus there belongs to what follows it, and what is before it
  /// may come closer. Unless overridden it does nothing.
  virtual void beginsWith(oss::wstring const&) const {}

  /// Tells the text that the next sign or horizontal line is above, right before that is drawn, when it is
  /// above nothing else: over a low letter it may come closer. Unless overridden it does nothing.
  virtual void isAbove(oss::wstring const&) const {}

  /// Draws a pair of brackets that its content can do without in print, though not in a line of text: the
  /// one around a summand. Unless overridden it calls `drawBracketPair`, as for supplied ones.
  virtual void drawSpareBrackets(long x, long y, long width, long height) const {
    drawBracketPair(x, y, width, height, true);
  }

  /// How far below the top of a text's box the baseline of the current font is, in units, for hosts that set
  /// formulas in lines of text (`ViewZNT4C::getBaseline`). Unless overridden it is half-way between the axis
  /// and the bottom of the box. Drawing does not depend on it.
  virtual double getTextBaseline() const;

  /// The width and the height of the tick of a radical in the current font.
  long getTickSize(SignE radical) const;
};

}  // namespace zolt::math::ved
