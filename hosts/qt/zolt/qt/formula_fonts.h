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
  /// last one lets go. Null when font files are missing, `error` then naming them.
  static std::shared_ptr<FormulaFonts> share(QString& error);

  FormulaFonts(FormulaFonts const&) = delete;
  FormulaFonts& operator=(FormulaFonts const&) = delete;

  oss::PointerTC<surfaces::TypesetterC> getTypesetter() const { return typesetter_; }

  /// The outline of a glyph in font units, y downwards, its origin on the baseline.
  QPainterPath const& outline(unsigned face, std::uint16_t glyph) const;
  /// Size of a font unit for letters of `em` surface units.
  double unitSize(unsigned face, double em) const;

 private:
  explicit FormulaFonts(oss::PointerTC<surfaces::TypesetterC> typesetter);

  struct FaceS {
    QRawFont font;
    mutable std::unordered_map<std::uint16_t, QPainterPath> outlines;
  };

  oss::PointerTC<surfaces::TypesetterC> typesetter_;
  std::vector<FaceS> faces_;
};

}  // namespace zolt::qt
