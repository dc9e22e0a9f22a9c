#pragma once

#include <QPainterPath>
#include <QRawFont>
#include <QString>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/typesetter.h"

namespace zolt::qt {

/// The faces that formulas are set in, as Qt draws them: the same font files that the typesetter measures, so
/// that a formula is laid out alike on every host. For the user-interface thread.
class FormulaFonts final {
 public:
  /// The fonts that everybody shares: loaded from the default folders by whoever comes first, kept until the
  /// last one lets go. When their files are missing or damaged, fonts of the system stand in. Null, with
  /// `error`, when it has none either.
  static std::shared_ptr<FormulaFonts> share(QString& error);
  /// The same from other folders, shared with nobody.
  static std::shared_ptr<FormulaFonts> load(std::vector<std::string> const& folders, QString& error);

  FormulaFonts(FormulaFonts const&) = delete;
  FormulaFonts& operator=(FormulaFonts const&) = delete;

  oss::PointerTC<surfaces::TypesetterC> getTypesetter() const { return typesetter_; }
  /// Why fonts of the system stand in, as a sentence without a full stop; empty when they do not.
  QString const& substitution() const { return substitution_; }

  /// The outline of a glyph in font units, y downwards, its origin on the baseline.
  QPainterPath const& outline(unsigned face, std::uint16_t glyph) const;
  /// Size of a font unit for letters of `em` surface units.
  double unitSize(unsigned face, double em) const;

 private:
  explicit FormulaFonts(oss::PointerTC<surfaces::FontSetC> const& files);
  static std::shared_ptr<FormulaFonts> make(oss::PointerTC<surfaces::FontSetC> const& files);

  struct FaceS {
    QRawFont font;
    mutable std::unordered_map<std::uint16_t, QPainterPath> outlines;
  };

  oss::PointerTC<surfaces::TypesetterC> typesetter_;
  std::vector<FaceS> faces_;
  QString substitution_;
};

}  // namespace zolt::qt
