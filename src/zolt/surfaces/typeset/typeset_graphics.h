#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/surfaces/typeset/outline.h"
#include "zolt/surfaces/typeset/path.h"
#include "zolt/surfaces/typeset/rule.h"
#include "zolt/surfaces/typeset/typesetter.h"
#include "zolt/ved/geometry/graphics.h"

namespace zolt::surfaces {

/// What a shape represents; each kind has its own strength of the foreground colour.
enum InkE {
  INK_TEXT = 0,      ///< texts, bars, signs, typed brackets and those of constructs
  INK_SUPPLIED = 1,  ///< brackets that the editor supplied because their partner is missing
  INK_SLOT = 2       ///< empty places
};

/// The share of the foreground colour, from 0 to 1.
constexpr double getInkStrength(InkE ink) {
  return ink == INK_TEXT ? 1.0 : ink == INK_SUPPLIED ? 0.45 : 0.16;
}

/// Glyphs of one face and size on one baseline. `PlacedGlyphS::x` counts from `x`.
struct GlyphRunS {
  unsigned face;
  double em;
  double x, baseline;
  PlacedGlyphS const* glyphs;
  std::size_t count;
};

/// The shared look as a drawing surface: it measures, shapes texts, brackets and signs, and leaves four
/// primitives to the derived class. All hosts that use it lay a formula out alike.
///
/// The coordinates of the primitives are in surface units; a derived surface only scales its painter.
class TypesetGraphicsABC : public math::ved::GraphicsABC {
 public:
  /// `typesetter` must not be null; surfaces may share one.
  explicit TypesetGraphicsABC(oss::PointerTC<TypesetterC> typesetter);
  ~TypesetGraphicsABC() override;
  TypesetGraphicsABC(TypesetGraphicsABC const&) = delete;
  TypesetGraphicsABC& operator=(TypesetGraphicsABC const&) = delete;

  TypesetterC& getTypesetter() const { return *typesetter_; }
  /// Another one, which must not be null. What was measured has to be laid out again.
  void setTypesetter(oss::PointerTC<TypesetterC> typesetter) { typesetter_ = std::move(typesetter); }

  void invalidate() const override {}
  void getTextExtent(oss::wstring const& text, long& width, long& height, long& midHeight) const final;
  long getTextWidth(oss::wstring const& text) const final;
  long getTextHeight(oss::wstring const& text) const final;
  long getTextMidHeight(oss::wstring const& text) const final;
  long getMetric(long index) const final;
  void drawText(oss::wstring const& text, long x, long y) const final;
  void drawLine(long x1, long y1, long x2, long y2) const final;
  void drawHorizontalLine(long x, long y, long length) const final;
  void drawVerticalLine(long x, long y, long length) const final;
  void drawOpenBracket(long x, long y, long height, bool automatic) const final;
  void drawCloseBracket(long x, long y, long height, bool automatic) const final;
  /// The brackets overhang the content box by `getMetric(2)`, like those that enclose part of a row. They are
  /// in full ink even when `automatic`: they belong to a sum or a logarithm just as its bar or its sign does.
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const final;
  void selectFont(unsigned long fontDepth) const final { depth_ = fontDepth; }
  double getTextBaseline() const final { return fontSize().baseline; }
  long getIndexWidth(oss::wstring const& text) const final;
  std::optional<math::ved::RectangleS> getClipBox() const final { return clipBox_; }
  /// A sign at the start of a text that follows another item is set as between two operands, and as a prefix
  /// in all other texts. An exponent moves close to the ink of the text that it is on.
  void drawTextAs(math::ved::TextRoleE role, oss::wstring const& text, long x, long y) const final;
  /// Brackets, bars, radicals and horizontal lines move closer to a prefix that begins what they enclose.
  void beginsWith(oss::wstring const& text) const final { enclosed_ = text.substr(0, 1); }
  /// What is above a low letter alone comes down to its ink.
  void isAbove(oss::wstring const& text) const final { covered_ = text.substr(0, most_covered); }
  void drawSpareBrackets(long, long, long, long) const final { enclosed_.clear(); }
  void drawSign(math::ved::SignE sign, long x, long y, long width, long height) const final;
  void drawStroke(math::ved::StrokeE kind, std::vector<math::ved::PointS> const& points) const final;

 protected:
  /// Restricts painting to this box from now on; without a box, and at first, everything is painted.
  void showOnly(std::optional<math::ved::RectangleS> const& box) { clipBox_ = box; }

  /// The measures of the current font.
  FontSizeS const& fontSize() const;

  virtual void fillGlyphs(GlyphRunS const& run) const = 0;
  /// Fills by the nonzero winding rule.
  virtual void fillPath(PathC const& path, InkE ink) const = 0;
  /// Strokes an open path with round ends and joins.
  virtual void strokePath(PathC const& path, double thickness, InkE ink) const = 0;
  /// Fills a sign or bracket with its box at the place, by `fillPath` unless a surface keeps outlines: those
  /// of a formula are few, and building one takes longer than all else of it.
  virtual void fillOutline(OutlineS const& outline, long x, long y, InkE ink) const;
  /// Paints a bar; a surface of pixels aligns it with `snapRule`.
  virtual void fillRule(RuleS const& rule, InkE ink) const = 0;

 private:
  static constexpr std::size_t most_covered = 8;

  void fillBars(math::ved::SignE sign, long x, long y, long width, long height, double closer) const;
  void fillBar(PathPointS from, PathPointS to) const;
  void fillSlot(double x, double y, double width) const;

  double takeCloser() const;
  double takeLower() const;
  bool isInSight(double left, PlacedGlyphS const& glyph) const;

  oss::PointerTC<TypesetterC> typesetter_;
  std::optional<math::ved::RectangleS> clipBox_;
  mutable unsigned long depth_ = 0;
  mutable oss::wstring enclosed_;    // the first character of what the next sign encloses
  mutable oss::wstring covered_;     // the beginning of what the next sign is above
  mutable double exponentKern_ = 0;  // how far an exponent on the text just drawn moves to the left
  mutable PathC path_;               // kept for its memory
};

}  // namespace zolt::surfaces
