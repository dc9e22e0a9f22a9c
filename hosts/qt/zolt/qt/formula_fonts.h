#pragma once

#include <QPainterPath>
#include <QRawFont>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/path.h"
#include "zolt/surfaces/typeset/typesetter.h"

namespace zolt::qt {

/// A path as Qt draws it.
QPainterPath toPainterPath(surfaces::PathC const& path);

/// The faces that formulas are set in, as Qt draws them: the same font files that the typesetter measures, so
/// that a formula has the same layout on every host. For use in the user-interface thread.
class FormulaFonts final {
 public:
  /// The fonts that all widgets share: the first caller loads them from the default folders, and they are
  /// kept until the last one releases them. When their files are missing or damaged, system fonts are used
  /// instead. Returns null, with `error`, when there are none either.
  static std::shared_ptr<FormulaFonts> share(QString& error);
  /// Loads fonts from other folders, which are not shared.
  static std::shared_ptr<FormulaFonts> load(std::vector<std::string> const& folders, QString& error);

  FormulaFonts(FormulaFonts const&) = delete;
  FormulaFonts& operator=(FormulaFonts const&) = delete;

  /// The one for the look of numbers.
  oss::PointerTC<surfaces::TypesetterC> getTypesetter(
      surfaces::NumberLookE look = surfaces::NUMBERS_AS_TYPED) const {
    return look == surfaces::NUMBERS_AS_TYPED ? typesetter_ : powersTypesetter_;
  }
  /// Why system fonts are used instead, as a sentence without a full stop; empty when they are not.
  QString const& substitution() const { return substitution_; }

  /// The outline of a glyph in font units, y downwards, its origin on the baseline.
  QPainterPath const& outline(unsigned face, std::uint16_t glyph) const;
  /// The same in pixels at `em` pixels per em, fitted to their rows (`surfaces::fitToRows`). The reference is
  /// good until the next call.
  QPainterPath const& fittedOutline(unsigned face, std::uint16_t glyph, double em) const;
  /// The size of a font unit for letters of `em` surface units.
  double unitSize(unsigned face, double em) const;

 private:
  explicit FormulaFonts(oss::PointerTC<surfaces::FontSetC> const& files);
  static std::shared_ptr<FormulaFonts> make(oss::PointerTC<surfaces::FontSetC> const& files);

  struct FaceS {
    QRawFont font;
    mutable std::unordered_map<std::uint16_t, QPainterPath> outlines;
    mutable std::map<std::pair<double, std::uint16_t>, QPainterPath> fitted;  // by size, too
  };

  oss::PointerTC<surfaces::TypesetterC> typesetter_, powersTypesetter_;
  std::vector<FaceS> faces_;
  QString substitution_;
};

}  // namespace zolt::qt
