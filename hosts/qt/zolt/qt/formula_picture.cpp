#include "zolt/qt/formula_picture.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainter>
#include <cmath>
#include <initializer_list>
#include <map>
#include <utility>

#include "zolt/field/formula_field.h"
#include "zolt/field/readable_text.h"
#include "zolt/qt/text.h"
#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/surfaces/typeset/svg_picture.h"

namespace zolt::qt {

namespace {

/// The largest picture that the raster engine can draw on and that fits a clipboard.
constexpr qreal max_side = 30000;
constexpr qreal max_pixels = 100e6;

surfaces::OutlineStepS makeStep(char verb, std::initializer_list<QPointF> points) {
  surfaces::OutlineStepS step{verb, 0, {}, {}};
  for (QPointF const& point : points) {
    step.x[step.count] = std::lround(point.x());
    step.y[step.count++] = std::lround(point.y());
  }
  return step;
}

/// The outlines of fonts as a picture wants them. Qt has made cubic curves of the quadratic ones in the font
/// files, which are turned back: their one control is where both tangents meet.
surfaces::OutlineT toOutline(QPainterPath const& path) {
  surfaces::OutlineT outline;
  QPointF at;
  for (int i = 0; i < path.elementCount(); ++i) {
    QPainterPath::Element const& element = path.elementAt(i);
    switch (element.type) {
      case QPainterPath::MoveToElement:
        if (i > 0) outline.push_back(makeStep('Z', {}));
        outline.push_back(makeStep('M', {element}));
        break;
      case QPainterPath::LineToElement:
        outline.push_back(makeStep('L', {element}));
        break;
      default: {
        QPointF const second = path.elementAt(i + 1), end = path.elementAt(i + 2);
        QPointF const fromStart = (3 * QPointF(element) - at) / 2, fromEnd = (3 * second - end) / 2;
        bool const isQuadratic = (fromStart - fromEnd).manhattanLength() < 1;
        outline.push_back(isQuadratic ? makeStep('Q', {(fromStart + fromEnd) / 2, end})
                                      : makeStep('C', {element, second, end}));
        i += 2;
      }
    }
    at = path.elementAt(i);
  }
  if (!outline.empty()) outline.push_back(makeStep('Z', {}));
  return outline;
}

/// Writes text that is not seen over what is painted in `area`: readers of the page find, copy and read it
/// aloud, while the formula itself is outlines. The painter's coordinates are the surface's.
void writeUnseen(QPainter& painter, QString const& text, QSizeF area, qreal baseline) {
  QFont font;
  font.setPixelSize(surfaces::getFontSize(0).em);
  font.setHintingPreference(QFont::PreferNoHinting);
  // Spaced letters, even by as little as there is, make no ligatures, which would be copied as one character.
  // The device counts the space in its own dots.
  font.setLetterSpacing(QFont::AbsoluteSpacing, 1.0 / 64);
  qreal const width = QFontMetricsF(font, painter.device()).horizontalAdvance(text);
  if (!(width > 0)) return;
  painter.setFont(font);
  painter.setPen(QColor(0, 0, 0, 0));
  painter.translate(0, baseline);
  painter.scale(area.width() / width, 1);
  painter.drawText(QPointF(), text);
}

class OutlinesC final : public surfaces::GlyphSourceABC {
 public:
  OutlinesC(surfaces::FontSetC const& files, FormulaFonts const& fonts) : files_(files), fonts_(fonts) {}

  surfaces::FontSetC const& getFonts() const override { return files_; }
  surfaces::OutlineT const& outline(unsigned face, std::uint16_t glyph) const override {
    auto const [place, isNew] = outlines_.try_emplace({face, glyph});
    if (isNew) place->second = toOutline(fonts_.outline(face, glyph));
    return place->second;
  }

 private:
  surfaces::FontSetC const& files_;
  FormulaFonts const& fonts_;
  mutable std::map<std::pair<unsigned, std::uint16_t>, surfaces::OutlineT> outlines_;
};

}  // namespace

FormulaPicture::FormulaPicture(std::shared_ptr<FormulaFonts> fonts, bool decimalComma)
    : fonts_(std::move(fonts)),
      graphics_(new QtGraphicsC(fonts_)),
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

void FormulaPicture::setPowersOfTen(bool powersOfTen) {
  auto const look = powersOfTen ? surfaces::NUMBERS_WITH_POWERS : surfaces::NUMBERS_AS_TYPED;
  graphics_->setTypesetter(fonts_->getTypesetter(look));
  field_->refView().measureAgain();
}

bool FormulaPicture::isComplete() const { return bool(field_->diagnose().expression); }

QSize FormulaPicture::size() const {
  math::ved::PointS const size = field_->refView().getExpressionSize();
  return {int(size.x), int(size.y)};
}

void FormulaPicture::draw() const {
  // Without a caret, every empty place is shown.
  math::ved::Node4C const& root = field_->crefView().crefRoot();
  root.display(field_->crefView().crefGraphics(), 0, 0, &root);
}

int FormulaPicture::axis() const {
  field_->refView().getExpressionSize();  // lays out
  return int(field_->crefView().crefRoot().getMidHeight());
}

void FormulaPicture::paint(QPainter& painter, QPointF topLeft, qreal zoom, QColor const& colour,
                           PaintTargetE target) const {
  field_->refView().getExpressionSize();  // lays out
  painter.save();
  painter.translate(topLeft);
  painter.scale(zoom, zoom);
  graphics_->begin(painter, colour, target);
  draw();
  graphics_->end();
  if (target == PAINT_PAPER_WITH_TEXT && painter.paintEngine()->type() == QPaintEngine::Pdf) {
    QString const text = toQString(field_->copy(field_->crefView().getWhole()).plainText);
    writeUnseen(painter, text, size(), field_->refView().getBaseline());
  }
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
  QSize const area = size();
  surfaces::DrawingC drawing;
  graphics_->begin(drawing);
  draw();
  graphics_->end();
  surfaces::PictureOptionsS options;
  options.zoom = zoom;
  options.margin = margin;
  options.foreground = {colour.redF(), colour.greenF(), colour.blueF(), colour.alphaF()};
  options.baseline = field_->refView().getBaseline();
  options.spokenText = field::makeReadableText(field_->crefView()).text;
  if (auto const expression = field_->diagnose().expression) {
    options.expression = expression->toPrefixString();
  }
  OutlinesC const outlines(graphics_->getTypesetter().getFonts(), *fonts_);
  return QByteArray::fromStdString(
      surfaces::writeSvg(surfaces::makeJob(drawing, outlines, options, area.width(), area.height())));
}

}  // namespace zolt::qt
