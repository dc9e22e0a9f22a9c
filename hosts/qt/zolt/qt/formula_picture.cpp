#include "zolt/qt/formula_picture.h"

#include <QBuffer>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgGenerator>

#include "zolt/field/formula_field.h"
#include "zolt/field/readable_text.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

/// The largest picture that the raster engine can draw on and that fits a clipboard.
constexpr qreal max_side = 30000;
constexpr qreal max_pixels = 100e6;

}  // namespace

FormulaPicture::FormulaPicture(std::shared_ptr<FormulaFonts> fonts, bool decimalComma)
    : graphics_(new QtGraphicsC(std::move(fonts))),
      field_(std::make_unique<field::FormulaFieldC>(graphics_)) {
  field::InputOptionsS options = field_->getOptions();
  options.decimalComma = decimalComma;
  field_->setOptions(options);
}

FormulaPicture::~FormulaPicture() = default;

bool FormulaPicture::setContent(field::ClipboardContentS const& content) {
  field_->setExpression(nullptr);
  return field_->paste(content) != field::PASTE_REFUSED;
}

bool FormulaPicture::setPrefix(oss::wstring const& prefix) {
  auto expression = math::algexpr::AlgebraicExpressionC::fromPrefixString(prefix);
  if (!expression) return false;
  field_->setExpression(std::move(expression));
  return true;
}

bool FormulaPicture::setTree(oss::wstring const& tree) { return field_->setNotation(tree); }

bool FormulaPicture::isComplete() const { return bool(field_->diagnose().expression); }

QSize FormulaPicture::size() const {
  math::ved::PointS const size = field_->refView().getExpressionSize();
  return {int(size.x), int(size.y)};
}

void FormulaPicture::paint(QPainter& painter, QPointF topLeft, qreal zoom, QColor const& colour,
                           PaintTargetE target) const {
  field_->refView().getExpressionSize();  // lays out
  painter.save();
  painter.translate(topLeft);
  painter.scale(zoom, zoom);
  graphics_->begin(painter, colour, target);
  // Without a caret, every empty place is shown.
  math::ved::Node4C const& root = field_->crefView().crefRoot();
  root.display(field_->crefView().crefGraphics(), 0, 0, &root);
  graphics_->end();
  painter.restore();
}

QImage FormulaPicture::toImage(qreal zoom, qreal margin, QColor const& colour,
                               QColor const& background) const {
  QSizeF const whole = (QSizeF(size()) + 2 * QSizeF(margin, margin)) * zoom;
  if (whole.width() > max_side || whole.height() > max_side || whole.width() * whole.height() > max_pixels) {
    return {};
  }
  QImage image(QSize(qCeil(whole.width()), qCeil(whole.height())), QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return image;
  image.fill(background);
  if (auto const expression = field_->diagnose().expression) {
    image.setText(QStringLiteral("zolt:expression"), toQString(expression->toPrefixString()));
  }
  QPainter painter(&image);
  paint(painter, QPointF(margin, margin) * zoom, zoom, colour);
  return image;
}

QByteArray FormulaPicture::toPng(qreal zoom, qreal margin, QColor const& colour,
                                 QColor const& background) const {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  toImage(zoom, margin, colour, background).save(&buffer, "PNG");
  return bytes;
}

QByteArray FormulaPicture::toSvg(qreal zoom, qreal margin, QColor const& colour) const {
  QSizeF const whole = (QSizeF(size()) + 2 * QSizeF(margin, margin)) * zoom;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  // One unit of the picture is one pixel of a web page.
  generator.setResolution(96);
  generator.setSize(whole.toSize());
  generator.setViewBox(QRectF(QPointF(), whole));
  QString const spoken = toQString(field::makeReadableText(field_->crefView()).text).toHtmlEscaped();
  generator.setTitle(spoken);
  if (auto const expression = field_->diagnose().expression) {
    generator.setDescription(toQString(expression->toPrefixString()).toHtmlEscaped());
  }
  QPainter painter(&generator);
  paint(painter, QPointF(margin, margin) * zoom, zoom, colour, PAINT_PAPER);
  painter.end();
  // The generator has whole millimetres for the size, and no words for who cannot see the picture.
  QByteArray const size = "width=\"" + QByteArray::number(whole.width()) + "\" height=\"" +
                          QByteArray::number(whole.height()) + "\"";
  QByteArray const label = " role=\"img\" aria-label=\"" + spoken.toUtf8() + '"';
  static QRegularExpression const printed(QStringLiteral("<svg width=\"[^\"]*\" height=\"[^\"]*\""));
  QRegularExpressionMatch const head = printed.match(QString::fromUtf8(bytes.left(1000)));
  if (!head.hasMatch()) return bytes;
  qsizetype const begin = bytes.indexOf(head.captured().toUtf8());
  return bytes.replace(begin, head.captured().toUtf8().size(), "<svg " + size + label);
}

}  // namespace zolt::qt
