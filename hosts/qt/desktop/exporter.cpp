#include "hosts/qt/desktop/exporter.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QImage>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSet>
#include <QSvgGenerator>
#include <algorithm>
#include <functional>
#include <vector>

#include "hosts/qt/desktop/result_layout.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::desktop {

namespace {

// Everything is laid out in pixels of 1/96 inch.
constexpr qreal pixels_per_inch = 96;
constexpr qreal formula_zoom = 1.4;
constexpr qreal formula_indent = 28;
constexpr qreal number_width = 48;
constexpr qreal picture_margin = 24;
constexpr qreal least_text_width = 480;
constexpr qreal block_gap = 14;
constexpr qreal result_gap = 4;
constexpr qreal graph_width = 460, graph_height = 230;

// For pictures of single formulas.
constexpr qreal single_zoom = 3;
constexpr qreal single_margin = 2;

constexpr qreal picture_scale = 2;  // device pixels to a pixel of PNG pictures
constexpr qreal most_pixels = 100e6;

using PictureT = std::unique_ptr<qt::FormulaPicture>;

/// A formula and where its upper left corner is.
struct PlacedFormulaS {
  qt::FormulaPicture const& picture;
  QPointF at;
  qreal zoom;
};

/// What a sheet is painted on.
struct PageS {
  QPainter& painter;
  qt::PaintTargetE target;
  std::vector<PlacedFormulaS>* formulas =
      nullptr;  ///< unless null, takes them in place of their being painted

  void paint(qt::FormulaPicture const& picture, QPointF at, qreal zoom) const {
    if (formulas) {
      formulas->push_back({picture, at, zoom});
    } else {
      picture.paint(painter, at, zoom, Qt::black, target);
    }
  }
};

/// A line of the sheet, a result or a graph, laid out for a given width.
struct BlockS {
  PictureT formula;         // null: something else
  PictureT value, decimal;  // of a result; null: not there
  ResultSign valueSign = ResultSign::Equals, numberSign = ResultSign::Equals;
  ResultLayout layout;  // of the result
  Graph const* graph = nullptr;
  QString text;
  QFont font;
  int number = 0;
  qreal width = 0;
  qreal height = 0;
  qreal zoom = formula_zoom;

  bool isResult() const { return value || decimal; }
};

QFont graphFont(QFont font) {
  font.setPixelSize(12);
  return font;
}

PictureT makePicture(SheetLine const& line, std::shared_ptr<qt::FormulaFonts> const& fonts,
                     bool decimalComma) {
  auto picture = std::make_unique<qt::FormulaPicture>(fonts, decimalComma);
  bool const shown = line.tree.isEmpty() ? picture->setPrefix(qt::toWstring(line.prefix))
                                         : picture->setTree(qt::toWstring(line.tree));
  return shown ? std::move(picture) : nullptr;
}

ResultPart partOf(PictureT const& picture, qreal zoom) {
  return picture ? ResultPart{QSizeF(picture->size()) * zoom, picture->axis() * zoom} : ResultPart();
}

/// The sheet as blocks, one below the other.
class PageFlow {
 public:
  PageFlow(Sheet const& sheet, std::shared_ptr<qt::FormulaFonts> const& fonts, QFont const& font,
           bool decimalComma, QHash<qsizetype, ShownBelow> const& below) {
    int number = 0;
    for (qsizetype i = 0; i < sheet.size(); ++i) {
      SheetLine const& line = sheet[i];
      BlockS block;
      block.font = font;
      block.font.setPixelSize(line.kind == LineKind::Heading ? 20 : 15);
      if (line.kind == LineKind::Heading) block.font.setWeight(QFont::DemiBold);
      if (line.kind == LineKind::Formula) {
        ++number;
        if (line.prefix.isEmpty() && line.tree.isEmpty()) continue;
        block.formula = makePicture(line, fonts, decimalComma);
        if (!block.formula) continue;
        block.number = number;
      } else {
        block.text = line.text;
      }
      blocks_.push_back(std::move(block));
      auto const shown = below.constFind(i);
      if (shown == below.constEnd()) continue;
      addResult(shown->result, fonts, decimalComma);
      if (!shown->graph) continue;
      blocks_.emplace_back();
      blocks_.back().font = graphFont(font);
      blocks_.back().graph = &*shown->graph;
    }
  }

  std::vector<BlockS> const& blocks() const { return blocks_; }

  qreal naturalWidth() const {
    qreal width = least_text_width;
    for (BlockS const& block : blocks_) {
      if (!block.formula && !block.isResult()) continue;
      qreal inside = 0;
      for (PictureT const* const each : {&block.formula, &block.value, &block.decimal}) {
        if (*each) inside = std::max(inside, (*each)->size().width() * formula_zoom);
      }
      width = std::max(width, formula_indent + inside + number_width);
    }
    return width;
  }

  /// Decides on the blocks' sizes; `most` is the height of a page.
  void layOut(qreal width, qreal most) {
    for (BlockS& block : blocks_) {
      block.width = width;
      if (block.formula) {
        QSizeF const size = block.formula->size();
        // A formula that is too large for the paper is scaled down.
        block.zoom = std::min(
            {formula_zoom, (width - formula_indent - number_width) / size.width(), most / size.height()});
        block.height = size.height() * block.zoom;
      } else if (block.isResult()) {
        layOutResultBlock(block, width - formula_indent, most);
      } else if (block.graph) {
        block.height = std::min(most, graph_height);
      } else {
        QRectF const room(0, 0, width, 1e6);
        block.height = QFontMetricsF(block.font).boundingRect(room, Qt::TextWordWrap, block.text).height();
        block.height = std::max(block.height, QFontMetricsF(block.font).height());
      }
    }
  }

  qreal height() const {
    qreal sum = 0;
    for (std::size_t i = 0; i < blocks_.size(); ++i) sum += block(i).height + gapAfter(i);
    return sum;
  }

  /// Between a block and the next one.
  qreal gapAfter(std::size_t i) const {
    if (i + 1 >= blocks_.size()) return 0;
    return block(i + 1).isResult() || block(i + 1).graph ? result_gap : block_gap;
  }
  /// A formula stays with its result: the height of all that must be on the same page.
  qreal heightTogether(std::size_t i) const {
    bool const hasResult = i + 1 < blocks_.size() && block(i + 1).isResult();
    return block(i).height + (hasResult ? result_gap + block(i + 1).height : 0);
  }

  static void paint(BlockS const& block, PageS const& page, QPointF at) {
    QPainter& painter = page.painter;
    painter.setPen(Qt::black);
    if (block.graph) {
      QSizeF const size(std::min(block.width - formula_indent, graph_width), block.height);
      painter.setFont(block.font);
      paintGraph(painter, {at + QPointF(formula_indent, 0), size}, *block.graph, block.graph->window,
                 GraphColours::onPaper());
      return;
    }
    if (block.isResult()) return paintResult(block, page, at + QPointF(formula_indent, 0));
    if (!block.formula) {
      painter.setFont(block.font);
      painter.drawText(QRectF(at, QSizeF(block.width, block.height)), Qt::TextWordWrap, block.text);
      return;
    }
    page.paint(*block.formula, at + QPointF(formula_indent, 0), block.zoom);
    painter.setFont(block.font);
    painter.setPen(Qt::darkGray);
    QRectF const box(at.x() + block.width - number_width, at.y(), number_width, block.height);
    painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("(%1)").arg(block.number));
  }

  void paintAll(PageS const& page, QPointF at) const {
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      paint(block(i), page, at);
      at.ry() += block(i).height + gapAfter(i);
    }
  }

 private:
  BlockS const& block(std::size_t i) const { return blocks_[i]; }

  void addResult(ShownResult const& result, std::shared_ptr<qt::FormulaFonts> const& fonts,
                 bool decimalComma) {
    auto const pictureOf = [&](ShownResult::Expression const& expression) {
      if (!expression) return PictureT();
      auto picture = std::make_unique<qt::FormulaPicture>(fonts, decimalComma);
      picture->setPowersOfTen(true);
      return picture->setPrefix(expression->toPrefixString()) ? std::move(picture) : PictureT();
    };
    BlockS block;
    block.value = pictureOf(result.value);
    block.decimal = pictureOf(result.number);
    block.valueSign = result.valueSign();
    block.numberSign = result.numberSign();
    if (block.isResult()) blocks_.push_back(std::move(block));
  }

  static qreal letterOf(qreal zoom) { return zoom * surfaces::getFontSize(0).em; }

  /// What is too large for the paper is scaled down.
  static void layOutResultBlock(BlockS& block, qreal room, qreal most) {
    auto const layOut = [&] {
      block.layout = layOutResult(partOf(block.value, block.zoom), partOf(block.decimal, block.zoom),
                                  letterOf(block.zoom), room);
      block.height = block.layout.height;
    };
    block.zoom = formula_zoom * result_scale;
    qreal const widest = widestResult(letterOf(block.zoom), room);
    for (PictureT const* const each : {&block.value, &block.decimal}) {
      if (*each) block.zoom = std::min(block.zoom, widest / (*each)->size().width());
    }
    layOut();
    if (block.height <= most) return;
    block.zoom *= most / block.height;
    layOut();
  }

  static void paintResult(BlockS const& block, PageS const& page, QPointF at) {
    auto const paintPart = [&](PictureT const& part, QPointF place, QPointF signPlace, ResultSign sign) {
      if (!part) return;
      paintResultSign(page.painter, at + signPlace, letterOf(block.zoom), sign);
      page.paint(*part, at + place, block.zoom);
    };
    paintPart(block.value, block.layout.value, block.layout.valueSign, block.valueSign);
    paintPart(block.decimal, block.layout.number, block.layout.numberSign, block.numberSign);
  }

  std::vector<BlockS> blocks_;
};

QByteArray toPng(QSizeF size, std::function<void(QPainter&)> const& paint) {
  QByteArray bytes;
  QSizeF const pixels = size * picture_scale;
  if (pixels.width() * pixels.height() > most_pixels) return bytes;
  QImage image(pixels.toSize(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(picture_scale, picture_scale);
  paint(painter);
  painter.end();
  QBuffer buffer(&bytes);
  image.save(&buffer, "PNG");
  return bytes;
}

/// The formulas in one picture, each with its text for those who do not see it. They share their letters.
QByteArray toSvgGroups(std::vector<PlacedFormulaS> const& formulas) {
  QByteArray letters, groups;
  QSet<QByteArray> defined;
  for (PlacedFormulaS const& formula : formulas) {
    QByteArray const place = "translate(" + QByteArray::number(formula.at.x()) + ',' +
                             QByteArray::number(formula.at.y()) + ") scale(" +
                             QByteArray::number(formula.zoom) + ')';
    for (QByteArray const& line : formula.picture.toSvg(formula.zoom, 0, Qt::black).split('\n')) {
      bool const isLetter = line.startsWith("<path id=");
      if (line.startsWith("<svg ")) {
        groups += "<g transform=\"" + place + "\" " + line.mid(line.indexOf("role=")) + '\n';
      } else if (line == "</svg>") {
        groups += "</g>\n";
      } else if (isLetter && !defined.contains(line)) {
        defined.insert(line);
        letters += line + '\n';
      } else if (!isLetter && line != "<defs>" && line != "</defs>" && !line.startsWith("<?xml")) {
        groups += line + '\n';
      }
    }
  }
  return "<defs>\n" + letters + "</defs>\n" + groups;
}

QByteArray toSvg(PageFlow const& flow, QSizeF size, QString const& title) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setResolution(int(pixels_per_inch));
  generator.setSize(size.toSize());
  generator.setViewBox(QRectF(QPointF(), size));
  generator.setTitle(title.toHtmlEscaped());
  QPainter painter(&generator);
  painter.fillRect(QRectF(QPointF(), size), Qt::white);
  std::vector<PlacedFormulaS> formulas;
  flow.paintAll({painter, qt::PAINT_PAPER, &formulas}, {picture_margin, picture_margin});
  painter.end();
  return bytes.insert(bytes.lastIndexOf("</svg>"), toSvgGroups(formulas));
}

}  // namespace

PictureFormat pictureFormatOf(QString const& path) {
  if (path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) return PictureFormat::Svg;
  if (path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) return PictureFormat::Pdf;
  return PictureFormat::Png;
}

Exporter::Exporter(std::shared_ptr<qt::FormulaFonts> fonts, QFont textFont, bool decimalComma)
    : fonts_(std::move(fonts)), textFont_(std::move(textFont)), decimalComma_(decimalComma) {}

QByteArray Exporter::exportSheet(Sheet const& sheet, PictureFormat format, QString const& title) const {
  if (format == PictureFormat::Pdf) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("ved-desktop"));
    return print(sheet, writer, writer.resolution()) ? bytes : QByteArray();
  }
  PageFlow flow(sheet, fonts_, textFont_, decimalComma_, below_);
  qreal const width = flow.naturalWidth();
  flow.layOut(width, 1e6);
  QSizeF const size(width + 2 * picture_margin, flow.height() + 2 * picture_margin);
  if (format == PictureFormat::Svg) return toSvg(flow, size, title);
  return toPng(size, [&](QPainter& painter) {
    flow.paintAll({painter, qt::PAINT_PIXELS}, {picture_margin, picture_margin});
  });
}

QByteArray Exporter::exportGraph(Graph const& graph) const {
  QSizeF const size(graph_width, graph_height);
  return toPng(size, [&](QPainter& painter) {
    painter.setFont(graphFont(textFont_));
    paintGraph(painter, {{}, size}, graph, graph.window, GraphColours::onPaper());
  });
}

QByteArray Exporter::exportFormula(SheetLine const& line, PictureFormat format) const {
  auto const picture = makePicture(line, fonts_, decimalComma_);
  if (!picture) return {};
  if (format == PictureFormat::Png) return picture->toPng(single_zoom, single_margin, Qt::black, Qt::white);
  if (format == PictureFormat::Svg) return picture->toSvg(formula_zoom, single_margin, Qt::black);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  qreal const zoom = formula_zoom * 72 / pixels_per_inch;  // points to a unit
  QSizeF const page = (QSizeF(picture->size()) + QSizeF(2 * single_margin, 2 * single_margin)) * zoom;
  writer.setPageSize(QPageSize(page, QPageSize::Point, {}, QPageSize::ExactMatch));
  writer.setPageMargins({});
  QPainter painter(&writer);
  qreal const scale = writer.resolution() / 72.0 * zoom;
  picture->paint(painter, QPointF(single_margin, single_margin) * scale, scale, Qt::black,
                 qt::PAINT_PAPER_WITH_TEXT);
  painter.end();
  return bytes;
}

bool Exporter::print(Sheet const& sheet, QPagedPaintDevice& device, int resolution) const {
  PageFlow flow(sheet, fonts_, textFont_, decimalComma_, below_);
  qreal const scale = resolution / pixels_per_inch;
  QSizeF const page = QSizeF(device.pageLayout().paintRectPixels(resolution).size()) / scale;
  flow.layOut(page.width(), page.height());
  QPainter painter;
  if (!painter.begin(&device)) return false;
  painter.scale(scale, scale);
  qreal y = 0;
  for (std::size_t i = 0; i < flow.blocks().size(); ++i) {
    BlockS const& block = flow.blocks()[i];
    qreal const needed = std::min(flow.heightTogether(i), page.height());
    if (y > 0 && y + std::max(needed, block.height) > page.height()) {
      if (!device.newPage()) return false;
      y = 0;
    }
    PageFlow::paint(block, {painter, qt::PAINT_PAPER_WITH_TEXT}, {0, y});
    y += block.height + flow.gapAfter(i);
  }
  return painter.end();
}

}  // namespace zolt::desktop
