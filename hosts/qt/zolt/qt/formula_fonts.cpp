#include "zolt/qt/formula_fonts.h"

#include <QByteArray>
#include <QCoreApplication>

#include "zolt/surfaces/typeset/row_fit.h"

namespace zolt::qt {

namespace {

QString tr(char const* text) { return QCoreApplication::translate("zolt::qt::FormulaFonts", text); }

void append32(QByteArray& bytes, qsizetype number) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes += char((number >> shift) & 0xFF);
}

/// A system font as the bytes of a font file, even if it was not loaded from one. Empty when it is no
/// TrueType or OpenType font.
std::string toFile(QRawFont const& font) {
  constexpr char const* tags[] = {"CFF ", "OS/2", "cmap", "cvt ", "fpgm", "glyf", "head",
                                  "hhea", "hmtx", "loca", "maxp", "name", "post", "prep"};
  constexpr qsizetype head_size = 12, entry_size = 16;
  QList<std::pair<QByteArray, QByteArray>> tables;
  for (char const* const tag : tags) {
    if (QByteArray const table = font.fontTable(tag); !table.isEmpty()) tables.push_back({tag, table});
  }
  bool const cubic = !tables.isEmpty() && tables.front().first == "CFF ";
  QByteArray head = cubic ? QByteArray("OTTO") : QByteArray("\0\1\0\0", 4);
  QByteArray body;
  head += char(0);
  head += char(tables.size());
  head += QByteArray(6, '\0');  // for a search in the directory, which is never used
  for (auto const& [tag, table] : tables) {
    head += tag;
    append32(head, 0);  // the checksum, which is never read
    append32(head, head_size + entry_size * tables.size() + body.size());
    append32(head, table.size());
    body += table + QByteArray(3 - (table.size() + 3) % 4, '\0');
  }
  return tables.isEmpty() ? std::string() : (head + body).toStdString();
}

oss::PointerTC<surfaces::FontSetC> loadSystemFonts() {
  QFont serif(QStringLiteral("serif"));
  serif.setStyleHint(QFont::Serif);
  QFont italic = serif;
  italic.setItalic(true);
  std::vector<surfaces::FontSetC::FileS> files;
  for (QFont const& font : {serif, italic, QFont(QStringLiteral("sans"))}) {
    QRawFont const raw = QRawFont::fromFont(font);
    std::string bytes = toFile(raw), cause;
    // The last font only supplies characters that the others lack.
    if (surfaces::SfntFontC().parse(bytes, cause) || files.size() < surfaces::FACE_FALLBACK) {
      files.push_back({raw.familyName().toStdString(), std::move(bytes)});
    }
  }
  std::string cause;
  return surfaces::FontSetC::fromMemory(std::move(files), cause);
}

QPointF toPoint(surfaces::PathPointS p) { return {p.x, p.y}; }

surfaces::PathC toPath(QPainterPath const& path) {
  surfaces::PathC result;
  auto const at = [&](int i) { return surfaces::PathPointS{path.elementAt(i).x, path.elementAt(i).y}; };
  for (int i = 0; i < path.elementCount(); ++i) {
    switch (path.elementAt(i).type) {
      case QPainterPath::MoveToElement:
        if (i > 0) result.close();
        result.moveTo(at(i));
        break;
      case QPainterPath::LineToElement:
        result.lineTo(at(i));
        break;
      default:  // the first control of a curve, which the other one and the target follow
        result.curveTo(at(i), at(i + 1), at(i + 2));
        i += 2;
    }
  }
  if (path.elementCount() > 0) result.close();
  return result;
}

}  // namespace

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

std::shared_ptr<FormulaFonts> FormulaFonts::share(QString& error) {
  // This pointer does not own the fonts: a QRawFont must not outlive the application object.
  static std::weak_ptr<FormulaFonts> shared;
  if (auto fonts = shared.lock()) return fonts;
  auto fonts = load(surfaces::FontSetC::getDefaultFolders(), error);
  shared = fonts;
  return fonts;
}

std::shared_ptr<FormulaFonts> FormulaFonts::load(std::vector<std::string> const& folders, QString& error) {
  std::string cause;
  auto const files = surfaces::FontSetC::load(folders, cause);
  if (auto fonts = make(files)) return fonts;
  QString why = files ? tr("The font files of formulas cannot be drawn") : QString::fromStdString(cause);
  why[0] = why[0].toUpper();
  auto fonts = make(loadSystemFonts());
  if (fonts) {
    fonts->substitution_ = why;
  } else {
    error = why;
  }
  return fonts;
}

/// Returns null when a font cannot be drawn.
std::shared_ptr<FormulaFonts> FormulaFonts::make(oss::PointerTC<surfaces::FontSetC> const& files) {
  if (!files) return nullptr;
  std::shared_ptr<FormulaFonts> fonts(new FormulaFonts(files));
  for (FaceS const& face : fonts->faces_) {
    if (!face.font.isValid()) return nullptr;
  }
  return fonts;
}

FormulaFonts::FormulaFonts(oss::PointerTC<surfaces::FontSetC> const& files)
    : typesetter_(new surfaces::TypesetterC(files)), powersTypesetter_(new surfaces::TypesetterC(files)) {
  powersTypesetter_->setNumberLook(surfaces::NUMBERS_WITH_POWERS);
  surfaces::FontSetC const& set = typesetter_->getFonts();
  for (unsigned face = 0; face < set.getFaceCount(); ++face) {
    surfaces::SfntFontC const& font = set.getFont(face);
    std::string const& bytes = font.getBytes();
    // At this size outlines are in font units, so the toolkit's rounding does no harm.
    QRawFont drawn(QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())), font.getUnitsPerEm(),
                   QFont::PreferNoHinting);
    faces_.push_back({std::move(drawn), {}, {}});
  }
}

QPainterPath const& FormulaFonts::outline(unsigned face, std::uint16_t glyph) const {
  FaceS const& from = faces_[face];
  auto const found = from.outlines.find(glyph);
  if (found != from.outlines.end()) return found->second;
  QPainterPath path = from.font.pathForGlyph(glyph);
  path.setFillRule(Qt::WindingFill);
  return from.outlines.emplace(glyph, std::move(path)).first->second;
}

QPainterPath const& FormulaFonts::fittedOutline(unsigned face, std::uint16_t glyph, double em) const {
  // Every zoom has its own outlines; those of former ones are let go from time to time.
  constexpr std::size_t most_kept = 2000;
  FaceS const& from = faces_[face];
  auto const found = from.fitted.find({em, glyph});
  if (found != from.fitted.end()) return found->second;
  if (from.fitted.size() >= most_kept) from.fitted.clear();
  double const unitsPerEm = typesetter_->getFonts().getFont(face).getUnitsPerEm();
  surfaces::PathC const fitted =
      surfaces::fitToRows(toPath(outline(face, glyph)), unitsPerEm, em / unitsPerEm);
  return from.fitted.emplace(std::pair(em, glyph), toPainterPath(fitted)).first->second;
}

double FormulaFonts::unitSize(unsigned face, double em) const {
  return em / typesetter_->getFonts().getFont(face).getUnitsPerEm();
}

}  // namespace zolt::qt
