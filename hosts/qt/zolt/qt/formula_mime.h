#pragma once

#include <QMimeData>
#include <memory>

#include "zolt/field/clipboard.h"
#include "zolt/qt/formula_fonts.h"

namespace zolt::qt {

/// The type of the exact copy of a row: docs/byte-format.md.
constexpr char formula_mime_type[] = "application/x-zolt-formula";
/// The type of the expression in prefix notation, UTF-8.
constexpr char prefix_mime_type[] = "application/x-zolt-prefix";
/// The type of its MathML, UTF-8.
constexpr char mathml_mime_type[] = "application/mathml+xml";
/// The type of its LaTeX, UTF-8.
constexpr char latex_mime_type[] = "application/x-tex";

/// A copied piece of a formula on its way to a clipboard or to the target of a drop: bytes for formula
/// fields, prefix notation for programs, and text, a table in HTML for a block of cells, MathML, LaTeX and a
/// picture (PNG and SVG), made on request, for all others.
class FormulaMimeData final : public QMimeData {
  Q_OBJECT

 public:
  /// Without `fonts` (null) it has no pictures.
  FormulaMimeData(field::ClipboardContentS content, std::shared_ptr<FormulaFonts> fonts, bool decimalComma);
  ~FormulaMimeData() override;

  /// What a field can paste of any mime data; empty when there is none.
  static field::ClipboardContentS read(QMimeData const& data);
  /// Whether `read` would return anything; false for null.
  static bool canRead(QMimeData const* data);

  QStringList formats() const override;
  bool hasFormat(QString const& type) const override;

 protected:
  QVariant retrieveData(QString const& type, QMetaType preferred) const override;

 private:
  field::ClipboardContentS content_;
  std::shared_ptr<FormulaFonts> fonts_;
  bool decimalComma_;
};

}  // namespace zolt::qt
