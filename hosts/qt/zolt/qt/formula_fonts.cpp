#include "zolt/qt/formula_fonts.h"

#include <QByteArray>
#include <QCoreApplication>

namespace zolt::qt {

std::shared_ptr<FormulaFonts> FormulaFonts::share(QString& error) {
  // Not owned here: a QRawFont must not outlive the application object.
  static std::weak_ptr<FormulaFonts> shared;
  if (auto fonts = shared.lock()) return fonts;
  std::string cause;
  auto const files = surfaces::FontSetC::load(surfaces::FontSetC::getDefaultFolders(), cause);
  if (!files) {
    error = QString::fromStdString(cause);
    return nullptr;
  }
  std::shared_ptr<FormulaFonts> fonts(new FormulaFonts(new surfaces::TypesetterC(files)));
  for (FaceS const& face : fonts->faces_) {
    if (face.font.isValid()) continue;
    error = QCoreApplication::translate("zolt::qt::FormulaFonts", "The font files cannot be drawn");
    return nullptr;
  }
  shared = fonts;
  return fonts;
}

FormulaFonts::FormulaFonts(oss::PointerTC<surfaces::TypesetterC> typesetter)
    : typesetter_(std::move(typesetter)) {
  surfaces::FontSetC const& set = typesetter_->getFonts();
  for (unsigned face = 0; face < set.getFaceCount(); ++face) {
    surfaces::SfntFontC const& font = set.getFont(face);
    std::string const& bytes = font.getBytes();
    // At this size outlines come in font units, which no rounding of the toolkit's can hurt.
    QRawFont drawn(QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())), font.getUnitsPerEm(),
                   QFont::PreferNoHinting);
    faces_.push_back({std::move(drawn), {}});
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

double FormulaFonts::unitSize(unsigned face, double em) const {
  return em / typesetter_->getFonts().getFont(face).getUnitsPerEm();
}

}  // namespace zolt::qt
