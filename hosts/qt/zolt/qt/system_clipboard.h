#pragma once

#include <QClipboard>
#include <memory>

#include "zolt/field/clipboard.h"
#include "zolt/qt/formula_fonts.h"

namespace zolt::qt {

/// One of the platform's clipboards as the clipboard of a field.
class SystemClipboardC final : public field::ClipboardABC {
 public:
  /// `fonts` (may be null) are used to draw the pictures.
  SystemClipboardC(std::shared_ptr<FormulaFonts> fonts, QClipboard::Mode mode = QClipboard::Clipboard);
  ~SystemClipboardC() override;

  void setDecimalComma(bool decimalComma) { decimalComma_ = decimalComma; }

  void write(field::ClipboardContentS const& content) override;
  field::ClipboardContentS read() const override;
  bool hasContent() const override;

 private:
  std::shared_ptr<FormulaFonts> fonts_;
  QClipboard::Mode mode_;
  bool decimalComma_ = false;
};

}  // namespace zolt::qt
