#include "hosts/qt/desktop/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>
#include <algorithm>

#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

namespace {

struct DrawingS {
  char const* name;
  char const* path;  // on a field of 24 by 24, stroked
};

constexpr DrawingS drawings[] = {
    {"new", "M6 3.5h8l4.5 4.5v12.5h-12.5z M14 3.5v4.5h4.5"},
    {"open", "M3.5 18.5v-13h6l2 2.5h8v2.5 M3.5 18.5l3-8h15l-3 8z"},
    {"save", "M4 4h13l3 3v13h-16z M8 4v5h8v-5 M7.5 20v-6.5h9v6.5"},
    {"export", "M12 15v-11 M8 8l4-4 4 4 M4.5 13v7h15v-7"},
    {"print", "M7 8.5v-5h10v5 M7 16.5h-3.5v-8h17v8h-3.5 M7 13.5h10v7h-10z"},
    {"undo", "M8 5l-4 4 4 4 M4 9h9.5a5.5 5.5 0 0 1 0 11h-5"},
    {"redo", "M16 5l4 4-4 4 M20 9h-9.5a5.5 5.5 0 0 0 0 11h5"},
    {"cut",
     "M6.5 20.5a2.8 2.8 0 1 0 0-5.6 2.8 2.8 0 0 0 0 5.6z M17.5 20.5a2.8 2.8 0 1 0 0-5.6 2.8 2.8 0 0 0 "
     "0 5.6z M8 15.3l8-12 M16 15.3l-8-12"},
    {"copy", "M8.5 8.5h11.5v11.5h-11.5z M15.5 8.5v-4.5h-11.5v11.5h4.5"},
    {"paste", "M9 5.5h-4v15h14v-15h-4 M9 3.5h6v4h-6z"},
    {"delete", "M4 6.5h16 M9 6.5v-3h6v3 M6 6.5l1 14h10l1-14 M10 10.5v6 M14 10.5v6"},
    {"add-formula", "M12 4.5v15 M4.5 12h15"},
    {"add-text", "M5 7v-2.5h14v2.5 M12 4.5v15 M9 19.5h6"},
    {"add-heading", "M6 4.5v15 M18 4.5v15 M6 12h12"},
    {"move-up", "M12 20v-16 M6 10l6-6 6 6"},
    {"move-down", "M12 4v16 M6 14l6 6 6-6"},
    {"duplicate", "M8.5 8.5h11.5v11.5h-11.5z M15.5 8.5v-4.5h-11.5v11.5h4.5 M14.2 11.5v5.5 M11.5 14.2h5.5"},
    {"zoom-in", "M10.5 17.5a7 7 0 1 0 0-14 7 7 0 0 0 0 14z M15.5 15.5l5 5 M7.5 10.5h6 M10.5 7.5v6"},
    {"zoom-out", "M10.5 17.5a7 7 0 1 0 0-14 7 7 0 0 0 0 14z M15.5 15.5l5 5 M7.5 10.5h6"},
    {"check", "M4.5 12.5l5 5 10-11"},
    {"palette",
     "M4 4h6.5v6.5h-6.5z M13.5 4h6.5v6.5h-6.5z M4 13.5h6.5v6.5h-6.5z M16.75 13.5v6.5 M13.5 16.75h6.5"},
    {"record", "M12 19a7 7 0 1 0 0-14 7 7 0 0 0 0 14z M12 14a2 2 0 1 0 0-4 2 2 0 0 0 0 4z"},
    {"help",
     "M12 21a9 9 0 1 0 0-18 9 9 0 0 0 0 18z M9.3 9.5a2.7 2.7 0 1 1 4 2.4c-.9.5-1.3 1-1.3 2 M12 16.8v.4"},
};

/// Paints in one colour: the application's text colour at the time of painting.
class InkIconEngine : public QIconEngine {
 public:
  void paint(QPainter* painter, QRect const& box, QIcon::Mode mode, QIcon::State) final {
    auto const group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    auto const role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
    paintInk(*painter, box, QGuiApplication::palette().color(group, role));
  }

  QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) final {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }

 protected:
  virtual void paintInk(QPainter& painter, QRectF const& box, QColor const& colour) = 0;
};

class CommandIconEngine final : public InkIconEngine {
 public:
  explicit CommandIconEngine(char const* path) : path_(path) {}

  QIconEngine* clone() const override { return new CommandIconEngine(path_); }

 protected:
  void paintInk(QPainter& painter, QRectF const& box, QColor const& colour) override {
    QByteArray const svg = QByteArrayLiteral(
                               "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'><path "
                               "fill='none' stroke-width='1.6' stroke-linecap='round' "
                               "stroke-linejoin='round' stroke='") +
                           colour.name().toLatin1() + "' stroke-opacity='" +
                           QByteArray::number(colour.alphaF()) + "' d='" + path_ + "'/></svg>";
    QSvgRenderer(svg).render(&painter, box);
  }

 private:
  char const* path_;
};

class FormulaIconEngine final : public InkIconEngine {
 public:
  FormulaIconEngine(QString tree, std::shared_ptr<qt::FormulaFonts> fonts)
      : tree_(std::move(tree)), fonts_(std::move(fonts)) {}

  QIconEngine* clone() const override { return new FormulaIconEngine(tree_, fonts_); }

 protected:
  void paintInk(QPainter& painter, QRectF const& box, QColor const& colour) override {
    qt::FormulaPicture picture(fonts_);
    if (!picture.setTree(qt::toWstring(tree_))) return;
    QSizeF const size = picture.size();
    // The formula is as large as on the sheet if it fits.
    qreal const fitting = std::min(box.width() / size.width(), box.height() / size.height());
    qreal const zoom = std::min(fitting, largest_share * box.height());
    QPointF const corner = box.center() - QPointF(size.width(), size.height()) * zoom / 2;
    picture.paint(painter, corner, zoom, colour);
  }

 private:
  static constexpr qreal largest_share = 1.25 / 34;  // zoom per pixel of the icon's height

  QString tree_;
  std::shared_ptr<qt::FormulaFonts> fonts_;
};

}  // namespace

QIcon commandIcon(QString const& name) {
  auto const found = std::find_if(std::begin(drawings), std::end(drawings), [&](DrawingS const& drawing) {
    return name == QLatin1String(drawing.name);
  });
  return found == std::end(drawings) ? QIcon() : QIcon(new CommandIconEngine(found->path));
}

QIcon formulaIcon(QString const& tree, std::shared_ptr<qt::FormulaFonts> fonts) {
  return QIcon(new FormulaIconEngine(tree, std::move(fonts)));
}

QIcon programIcon(std::shared_ptr<qt::FormulaFonts> fonts) {
  QIcon icon;
  for (int const side : {16, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x2f, 0x5d, 0xa8));
    painter.drawRoundedRect(QRectF(0, 0, side, side), 0.2 * side, 0.2 * side);
    qt::FormulaPicture picture(fonts);
    picture.setPrefix(u"sqrt(x)");
    QSizeF const size = picture.size();
    qreal const zoom = 0.7 * side / std::max(size.width(), size.height());
    picture.paint(painter, QPointF(side - size.width() * zoom, side - size.height() * zoom) / 2, zoom,
                  Qt::white);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace zolt::desktop
