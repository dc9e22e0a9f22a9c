#pragma once

#include <QByteArray>
#include <QFont>
#include <QHash>
#include <QString>
#include <memory>
#include <optional>
#include <utility>

#include "hosts/qt/desktop/graph.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet.h"

class QPagedPaintDevice;

namespace zolt::qt {
class FormulaFonts;
}

namespace zolt::desktop {

enum class PictureFormat { Png, Svg, Pdf };

/// The format that the extension of a file name asks for, or PNG when it asks for none.
PictureFormat pictureFormatOf(QString const& path);

/// What is shown below the formula of a line.
struct ShownBelow {
  ShownResult result;
  std::optional<Graph> graph;
};

/// Makes pictures and pages of a sheet, always dark on white. Empty formulas are omitted.
class Exporter final {
 public:
  /// `fonts` must not be null; `textFont` sets the texts between the formulas.
  Exporter(std::shared_ptr<qt::FormulaFonts> fonts, QFont textFont, bool decimalComma);

  /// What is to be below lines of the sheets to come, by the index of the line.
  void setBelow(QHash<qsizetype, ShownBelow> below) { below_ = std::move(below); }

  /// The whole sheet as the contents of a file; a PDF has pages of the usual paper size. The result is empty
  /// when it would be larger than pictures may be.
  QByteArray exportSheet(Sheet const& sheet, PictureFormat format, QString const& title) const;
  /// One formula in its natural size.
  QByteArray exportFormula(SheetLine const& line, PictureFormat format) const;
  /// A graph as a PNG picture.
  QByteArray exportGraph(Graph const& graph) const;
  /// Paints on a printer or into a PDF; `resolution` is the device's, in dots per inch. Returns false when
  /// the device cannot be painted on.
  bool print(Sheet const& sheet, QPagedPaintDevice& device, int resolution) const;

 private:
  std::shared_ptr<qt::FormulaFonts> fonts_;
  QFont textFont_;
  bool decimalComma_;
  QHash<qsizetype, ShownBelow> below_;
};

}  // namespace zolt::desktop
