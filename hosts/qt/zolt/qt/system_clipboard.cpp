#include "zolt/qt/system_clipboard.h"

#include <QGuiApplication>

#include "zolt/qt/formula_mime.h"

namespace zolt::qt {

SystemClipboardC::SystemClipboardC(std::shared_ptr<FormulaFonts> fonts, QClipboard::Mode mode)
    : fonts_(std::move(fonts)), mode_(mode) {}

SystemClipboardC::~SystemClipboardC() = default;

void SystemClipboardC::write(field::ClipboardContentS const& content) {
  if (content.isEmpty()) return;
  QGuiApplication::clipboard()->setMimeData(new FormulaMimeData(content, fonts_, decimalComma_), mode_);
}

field::ClipboardContentS SystemClipboardC::read() const {
  QMimeData const* const data = QGuiApplication::clipboard()->mimeData(mode_);
  return data ? FormulaMimeData::read(*data) : field::ClipboardContentS();
}

bool SystemClipboardC::hasContent() const {
  return FormulaMimeData::canRead(QGuiApplication::clipboard()->mimeData(mode_));
}

}  // namespace zolt::qt
