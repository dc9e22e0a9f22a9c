// The pictures of the gallery on every surface: what QPainter paints, PNG and SVG of Cairo's surface.

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTest>

#include "zolt/algexpr/cas_session.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"
#include "zolt/surfaces/cairo/cairo_graphics.h"
#include "zolt/ved/tree/node4.h"

using namespace zolt;

namespace {

constexpr double margin = 4;

using CairoT = oss::PointerTC<surfaces::CairoGraphicsC>;

QByteArray render(CairoT const& cairo, math::ved::Node4C const& tree, surfaces::PictureFormatE format,
                  double zoom, surfaces::SvgTextE text = surfaces::SVG_TEXT_OUTLINES) {
  surfaces::PictureOptionsS options;
  options.zoom = zoom;
  options.margin = margin;
  options.background.opacity = 1;
  options.svgText = text;
  options.expression = u"<\"&\xD800\u0001\">";
  std::string bytes, why;
  if (!cairo->render(format, tree.getWidth(), tree.getHeight(), options, bytes, why))
    qWarning("%s", why.c_str());
  return QByteArray::fromStdString(bytes);
}

QImage rasterise(QByteArray const& svg, QSize size, double zoom) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  QSvgRenderer renderer(svg);
  QPainter painter(&image);
  renderer.render(&painter, QRectF(QPointF(), renderer.viewBoxF().size() * zoom));
  return image;
}

/// The share of the ink of `one` that `other` has nowhere within a pixel of it: readers of SVG differ in
/// which pixels a bar covers.
double missingInk(QImage const& one, QImage const& other) {
  long missing = 0, ink = 0;
  for (int y = 1; y + 1 < one.height(); ++y) {
    for (int x = 1; x + 1 < one.width(); ++x) {
      int const wanted = 255 - one.constScanLine(y)[x];
      if (wanted == 0) continue;
      int found = 0;
      for (int v = y - 1; v <= y + 1; ++v) {
        uchar const* const row = other.constScanLine(v) + x;
        found = std::max({found, 255 - row[-1], 255 - row[0], 255 - row[1]});
      }
      missing += std::max(0, wanted - found);
      ink += wanted;
    }
  }
  return double(missing) / double(ink);
}

double difference(QImage const& one, QImage const& other) {
  if (one.size() != other.size()) return 1;
  QImage const a = one.convertToFormat(QImage::Format_Grayscale8);
  QImage const b = other.convertToFormat(QImage::Format_Grayscale8);
  return std::max(missingInk(a, b), missingInk(b, a));
}

}  // namespace

class LookTest final : public QObject {
  Q_OBJECT

 private slots:
  void formulasLookAlikeOnEverySurface() {
    qt::FormulaEdit provider;  // the operators
    QString error;
    auto const fonts = qt::FormulaFonts::share(error);
    QVERIFY2(fonts, qPrintable(error));
    QFile gallery(QStringLiteral(ZOLT_GALLERY));
    QVERIFY(gallery.open(QIODevice::ReadOnly));
    auto const session = math::algexpr::CASSessionBC::getSession();
    int count = 0;
    for (QByteArray const& line : gallery.readAll().split('\n')) {
      qsizetype const colon = line.indexOf(": ");
      if (line.startsWith('#') || colon < 0) continue;
      auto const expression =
          exchange::fromPlainText(qt::toWstring(QString::fromUtf8(line.mid(colon + 2))), session);
      QVERIFY2(expression, line.constData());

      // The widget's field hands its drawing calls on; the tree makes them itself.
      qt::FormulaPicture picture(fonts);
      QVERIFY(picture.setPrefix(expression->toPrefixString()));
      std::unique_ptr<math::ved::Node4C> const tree(
          math::ved::Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
      CairoT const cairo(new surfaces::CairoGraphicsC(fonts->getTypesetter()));
      tree->layout(*cairo);
      tree->display(*cairo, 0, 0, tree.get());
      // Letters are on whole rows of pixels where they are small, and where they are in a file of outlines
      // never.
      for (double const zoom : {1.75, 3.0}) {
        QImage const png = QImage::fromData(render(cairo, *tree, surfaces::PICTURE_PNG, zoom), "PNG");
        QVERIFY2(difference(picture.toImage(zoom, margin, Qt::black, Qt::white), png) < 0.01,
                 line.constData());
      }
      constexpr double large = 7;
      QImage const png = QImage::fromData(render(cairo, *tree, surfaces::PICTURE_PNG, large), "PNG");
      QByteArray const svg = render(cairo, *tree, surfaces::PICTURE_SVG, large);
      QVERIFY2(difference(rasterise(svg, png.size(), large), png) < 0.01, line.constData());
      QVERIFY2(difference(rasterise(picture.toSvg(large, margin, Qt::black), png.size(), large), png) < 0.01,
               line.constData());
      for (auto const text : {surfaces::SVG_TEXT_NAMED, surfaces::SVG_TEXT_EMBEDDED}) {
        QVERIFY2(QSvgRenderer(render(cairo, *tree, surfaces::PICTURE_SVG, large, text)).isValid(),
                 line.constData());
      }
      ++count;
    }
    QVERIFY(count > 100);
  }
};

QTEST_MAIN(LookTest)
#include "look_test.moc"
