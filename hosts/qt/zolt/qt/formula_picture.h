#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPointF>
#include <QSize>
#include <memory>

#include "zolt/field/clipboard.h"
#include "zolt/oss/pointer.h"
#include "zolt/qt/formula_fonts.h"
#include "zolt/qt/qt_graphics.h"

class QPainter;

namespace zolt::field {
class FormulaFieldC;
}

namespace zolt::qt {

/// A formula to look at: for icons, for pictures on the clipboard and in files, and for print.
class FormulaPicture final {
 public:
  /// It is empty at first. `fonts` must not be null. `decimalComma` is as in the field.
  explicit FormulaPicture(std::shared_ptr<FormulaFonts> fonts, bool decimalComma = false);
  ~FormulaPicture();
  FormulaPicture(FormulaPicture const&) = delete;
  FormulaPicture& operator=(FormulaPicture const&) = delete;

  /// Shows what was copied. Returns false when it cannot be read.
  bool setContent(field::ClipboardContentS const& content);
  /// Shows an expression in prefix notation. Returns false when it cannot be read.
  bool setPrefix(oss::wstring const& prefix);
  /// Shows a formula in the notation of `FormulaEdit::tree`. Returns false when it cannot be read.
  bool setTree(oss::wstring const& tree);

  /// Shows numbers in scientific notation with powers of ten.
  void setPowersOfTen(bool powersOfTen);

  /// Whether the formula is complete, that is an expression.
  bool isComplete() const;
  /// The size in surface units.
  QSize size() const;
  /// How far below the top the axis is, on which the signs beside the formula are centred.
  int axis() const;
  /// Paints the formula with its top-left corner at `topLeft`, at `zoom` painter units per surface unit.
  void paint(QPainter& painter, QPointF topLeft, qreal zoom, QColor const& colour,
             PaintTargetE target = PAINT_PIXELS) const;

  /// The picture has `margin` surface units around the formula; `background` may be transparent. A complete
  /// formula is stored inside the picture in prefix notation, as the text "zolt:expression". Null when the
  /// picture would be larger than pictures may be.
  QImage toImage(qreal zoom, qreal margin, QColor const& colour, QColor const& background) const;
  QByteArray toPng(qreal zoom, qreal margin, QColor const& colour, QColor const& background) const;
  /// Letters are outlines, so that the picture looks alike everywhere. It has the formula in words for those
  /// who cannot see it, and stands on the line of the text that it is put into.
  QByteArray toSvg(qreal zoom, qreal margin, QColor const& colour) const;

 private:
  void draw() const;

  std::shared_ptr<FormulaFonts> fonts_;
  oss::PointerTC<QtGraphicsC> graphics_;
  std::unique_ptr<field::FormulaFieldC> field_;
};

}  // namespace zolt::qt
