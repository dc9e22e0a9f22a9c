#pragma once

#include <QColor>
#include <QFont>
#include <functional>
#include <memory>

#include "zolt/qt/formula_fonts.h"
#include "zolt/surfaces/typeset/drawing.h"
#include "zolt/surfaces/typeset/typeset_graphics.h"

class QPainter;
class QTransform;

namespace zolt::qt {

/// The kind of target that a painter paints on.
enum PaintTargetE {
  PAINT_PIXELS = 0,  ///< widgets and images: bars and other straight strokes are aligned with the pixels
  PAINT_PAPER = 1,   ///< printers, PDF, SVG
  /// The same, and the plain text of a `FormulaPicture` is over it, unseen, to be copied and searched for.
  /// For printers and PDF other than PDF/A-1, which has no transparent text.
  PAINT_PAPER_WITH_TEXT = 2
};

/// The textbook look on a `QPainter`. One unit of the surface is one unit of the painter's coordinates: scale
/// the painter to zoom; the layout does not change.
class QtGraphicsC final : public surfaces::TypesetGraphicsABC {
 public:
  /// `fonts` must not be null.
  explicit QtGraphicsC(std::shared_ptr<FormulaFonts> fonts);
  ~QtGraphicsC() override;

  /// Sets the function that is called when the view on this surface wants to be repainted; it must not paint
  /// from inside the call.
  void onInvalidate(std::function<void()> handler) { invalidated_ = std::move(handler); }

  /// Draws with `painter` in `colour` until `end`; drawing at other times has no effect. The painter's
  /// current clipping saves work: set it when much of a formula is out of sight.
  void begin(QPainter& painter, QColor const& colour, PaintTargetE target = PAINT_PIXELS);
  /// Keeps what is drawn in `drawing`, which stays the caller's, until `end`.
  void begin(surfaces::DrawingC& drawing) { drawing_ = &drawing; }
  void end();

  void invalidate() const override;
  /// Text that is being composed is set in the font of the program, which has letters of all scripts.
  long getComposedWidth(oss::wstring const& text) const override;
  void drawComposed(oss::wstring const& text, long x, long y) const override;

 protected:
  void fillGlyphs(surfaces::GlyphRunS const& run) const override;
  void fillPath(surfaces::PathC const& path, surfaces::InkE ink) const override;
  void strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const override;
  void fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const override;

 private:
  QFont composedFont() const;
  bool isPixelGrid(QTransform const& device) const;
  QColor inkColour(surfaces::InkE ink) const;

  std::shared_ptr<FormulaFonts> fonts_;
  std::function<void()> invalidated_;
  QPainter* painter_ = nullptr;
  surfaces::DrawingC* drawing_ = nullptr;
  QColor colour_;
  PaintTargetE target_ = PAINT_PIXELS;
};

}  // namespace zolt::qt
