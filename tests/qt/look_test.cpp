// What QPainter paints against what Cairo paints: the same drawing from the same outlines.

#include <QImage>
#include <QTest>
#include <cmath>

#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/formula_field.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"
#include "zolt/surfaces/cairo/cairo_graphics.h"

using namespace zolt;

class LookTest final : public QObject {
  Q_OBJECT

 private slots:
  void formulasLookAlikeOnEverySurface() {
    constexpr double zoom = 3, margin = 4;
    qt::FormulaEdit provider;  // the operators
    QString error;
    auto const fonts = qt::FormulaFonts::share(error);
    QVERIFY2(fonts, qPrintable(error));
    for (char const* const prefix :
         {"=(x,/(+(_neg(b),sqrt(-(^(b,2),*(*(4,a),c)))),*(2,a)))", "integral(0,_PI,sin(x),x)",
          "sum(k,1,n,/(1,k))", "nthroot(floor(ceil(x)),n)", "where(diff(f(x),x),x,a)"}) {
      qt::FormulaPicture picture(fonts);
      QVERIFY(picture.setPrefix(qt::toWstring(QLatin1String(prefix))));
      QImage const ours = picture.toImage(zoom, margin, Qt::black, Qt::white);

      oss::PointerTC<surfaces::CairoGraphicsC> const cairo(
          new surfaces::CairoGraphicsC(fonts->getTypesetter()));
      field::FormulaFieldC field(cairo);
      field.setExpression(
          math::algexpr::AlgebraicExpressionC::fromPrefixString(qt::toWstring(QLatin1String(prefix))));
      math::ved::PointS const size = field.refView().getExpressionSize();
      QCOMPARE(picture.size(), QSize(int(size.x), int(size.y)));
      field.crefView().display(0, 0);
      surfaces::PictureOptionsS options;
      options.zoom = zoom;
      options.margin = margin;
      options.background.opacity = 1;
      std::string bytes, why;
      QVERIFY2(cairo->render(surfaces::PICTURE_PNG, size.x, size.y, options, bytes, why), why.c_str());
      QImage const theirs = QImage::fromData(QByteArray::fromStdString(bytes), "PNG");
      QCOMPARE(ours.size(), theirs.size());
      double difference = 0, ink = 0;
      for (int y = 0; y < ours.height(); ++y) {
        for (int x = 0; x < ours.width(); ++x) {
          difference += std::abs(qGray(ours.pixel(x, y)) - qGray(theirs.pixel(x, y)));
          ink += 255 - qGray(theirs.pixel(x, y));
        }
      }
      QVERIFY2(difference < 0.06 * ink,
               qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(prefix)).arg(difference / ink)));
    }
  }
};

QTEST_MAIN(LookTest)
#include "look_test.moc"
