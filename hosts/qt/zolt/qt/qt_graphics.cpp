#include "zolt/qt/qt_graphics.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QTransform>
#include <cmath>

#include "zolt/qt/text.h"
#include "zolt/surfaces/typeset/row_fit.h"

namespace zolt::qt {

QtGraphicsC::QtGraphicsC(std::shared_ptr<FormulaFonts> fonts)
    : TypesetGraphicsABC(fonts->getTypesetter()), fonts_(std::move(fonts)) {}

QtGraphicsC::~QtGraphicsC() = default;

void QtGraphicsC::begin(QPainter& painter, QColor const& colour, PaintTargetE target) {
  painter_ = &painter;
  colour_ = colour;
  target_ = target;
  if (painter.hasClipping()) {
    QRect const seen = painter.clipBoundingRect().toAlignedRect();
    showOnly(math::ved::RectangleS(seen.left(), seen.top(), seen.right() + 1, seen.bottom() + 1));
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
}

void QtGraphicsC::end() {
  drawing_ = nullptr;
  if (!painter_) return;
  showOnly(std::nullopt);
  painter_->restore();
  painter_ = nullptr;
}

void QtGraphicsC::invalidate() const {
  if (invalidated_) invalidated_();
}

QFont QtGraphicsC::composedFont() const {
  QFont font;
  font.setPixelSize(fontSize().em);
  // The layout must not depend on the zoom.
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

long QtGraphicsC::getComposedWidth(oss::wstring const& text) const {
  return long(std::ceil(QFontMetricsF(composedFont()).horizontalAdvance(toQString(text))));
}

void QtGraphicsC::drawComposed(oss::wstring const& text, long x, long y) const {
  if (!painter_) return;
  painter_->setFont(composedFont());
  painter_->setPen(colour_);
  painter_->drawText(QPointF(double(x), double(y) + fontSize().baseline), toQString(text));
}

QColor QtGraphicsC::inkColour(surfaces::InkE ink) const {
  QColor colour = colour_;
  colour.setAlphaF(colour.alphaF() * float(surfaces::getInkStrength(ink)));
  return colour;
}

bool QtGraphicsC::isPixelGrid(QTransform const& device) const {
  return target_ == PAINT_PIXELS && device.type() <= QTransform::TxScale && device.m11() == device.m22();
}

void QtGraphicsC::fillGlyphs(surfaces::GlyphRunS const& run) const {
  if (drawing_) drawing_->addGlyphs(run);
  if (!painter_) return;
  // Glyphs are filled as outlines: drawn as text, each would be moved to whole pixels, and the spacing would
  // be uneven.
  QTransform const before = painter_->worldTransform();
  QTransform const device = painter_->deviceTransform();
  double const zoom = device.m11();
  if (isPixelGrid(device) && run.em * zoom <= surfaces::largest_fitted_em) {
    QTransform const fromPixels = device.inverted() * before;
    double const baseline = std::round(device.dy() + run.baseline * zoom);
    for (std::size_t i = 0; i < run.count; ++i) {
      double const x = device.dx() + (run.x + run.glyphs[i].x) * zoom;
      painter_->setWorldTransform(QTransform::fromTranslate(x, baseline) * fromPixels);
      painter_->fillPath(fonts_->fittedOutline(run.face, run.glyphs[i].glyph, run.em * zoom),
                         inkColour(surfaces::INK_TEXT));
    }
    painter_->setWorldTransform(before);
    return;
  }
  double const scale = fonts_->unitSize(run.face, run.em);
  QBrush const brush(inkColour(surfaces::INK_TEXT));
  for (std::size_t i = 0; i < run.count; ++i) {
    QTransform place = QTransform::fromTranslate(run.x + run.glyphs[i].x, run.baseline);
    place.scale(scale, scale);
    painter_->setWorldTransform(place * before);
    painter_->fillPath(fonts_->outline(run.face, run.glyphs[i].glyph), brush);
  }
  painter_->setWorldTransform(before);
}

void QtGraphicsC::fillPath(surfaces::PathC const& path, surfaces::InkE ink) const {
  if (drawing_) drawing_->addFill(path, ink);
  if (painter_) painter_->fillPath(toPainterPath(path), inkColour(ink));
}

void QtGraphicsC::strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const {
  if (drawing_) drawing_->addStroke(path, thickness, ink);
  if (!painter_) return;
  QPen const pen(inkColour(ink), thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  painter_->strokePath(toPainterPath(path), pen);
}

void QtGraphicsC::fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const {
  if (drawing_) drawing_->addRule(rule, ink);
  if (!painter_) return;
  surfaces::BoxS const units = rule.box();
  QRectF box(units.x, units.y, units.width, units.height);
  QTransform const device = painter_->deviceTransform();
  if (isPixelGrid(device)) {
    surfaces::BoxS const pixels = surfaces::snapRule(rule, device.m11(), device.dx(), device.dy());
    box = device.inverted().mapRect(QRectF(pixels.x, pixels.y, pixels.width, pixels.height));
  }
  painter_->fillRect(box, inkColour(ink));
}

}  // namespace zolt::qt
