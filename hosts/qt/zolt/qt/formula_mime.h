#pragma once

#include <QMimeData>
#include <memory>

#include "zolt/field/clipboard.h"
#include "zolt/qt/formula_fonts.h"

namespace zolt::qt {

/// The row that was copied, exactly: docs/byte-format.md.
constexpr char formula_mime_type[] = "application/x-zolt-formula";
/// The expression in prefix notation, UTF-8.
constexpr char prefix_mime_type[] = "application/x-zolt-prefix";

/// A copied piece of formula on its way to a clipboard or to where it is dropped: for formula fields as
/// bytes, for programs in prefix notation, for everybody as text and as a picture (PNG and SVG, made when
/// asked for).
class FormulaMimeData final : public QMimeData {
  Q_OBJECT

 public:
  /// Without `fonts` (null) there are no pictures.
  FormulaMimeData(field::ClipboardContentS content, std::shared_ptr<FormulaFonts> fonts, bool decimalComma);
  ~FormulaMimeData() override;

  /// What a field can paste of any mime data; empty when there is nothing.
  static field::ClipboardContentS read(QMimeData const& data);
  /// Whether `read` would give anything; of null, nothing.
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
