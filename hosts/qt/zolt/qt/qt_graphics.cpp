#include "zolt/qt/qt_graphics.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QTransform>
#include <cmath>

#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

QPointF toPoint(surfaces::PathPointS p) { return {p.x, p.y}; }

QPainterPath toPainterPath(surfaces::PathC const& path) {
  QPainterPath result;
  result.setFillRule(Qt::WindingFill);
  for (surfaces::PathStepS const& step : path.getSteps()) {
    switch (step.verb) {
      case surfaces::PATH_MOVE:
        result.moveTo(toPoint(step.points[0]));
        break;
      case surfaces::PATH_LINE:
        result.lineTo(toPoint(step.points[0]));
        break;
      case surfaces::PATH_CURVE:
        result.cubicTo(toPoint(step.points[0]), toPoint(step.points[1]), toPoint(step.points[2]));
        break;
      case surfaces::PATH_CLOSE:
        result.closeSubpath();
        break;
    }
  }
  return result;
}

}  // namespace

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

void QtGraphicsC::fillGlyphs(surfaces::GlyphRunS const& run) const {
  if (!painter_) return;
  // Glyphs are filled as outlines: drawn as text, each would be moved to whole pixels, and the spacing would
  // be uneven.
  QTransform const before = painter_->worldTransform();
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
  if (painter_) painter_->fillPath(toPainterPath(path), inkColour(ink));
}

void QtGraphicsC::strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const {
  if (!painter_) return;
  QPen const pen(inkColour(ink), thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  painter_->strokePath(toPainterPath(path), pen);
}

void QtGraphicsC::fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const {
  if (!painter_) return;
  surfaces::BoxS const units = rule.box();
  QRectF box(units.x, units.y, units.width, units.height);
  QTransform const device = painter_->deviceTransform();
  if (target_ == PAINT_PIXELS && device.type() <= QTransform::TxScale && device.m11() == device.m22()) {
    surfaces::BoxS const pixels = surfaces::snapRule(rule, device.m11(), device.dx(), device.dy());
    box = device.inverted().mapRect(QRectF(pixels.x, pixels.y, pixels.width, pixels.height));
  }
  painter_->fillRect(box, inkColour(ink));
}

}  // namespace zolt::qt
