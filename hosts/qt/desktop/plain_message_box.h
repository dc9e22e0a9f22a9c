#pragma once

#include <QLabel>
#include <QMessageBox>

#include "hosts/qt/desktop/mnemonics.h"

namespace zolt::desktop {

/// Shows its texts as they are, since they may hold names of files, and these may look like rich text. Every
/// button has a letter.
class PlainMessageBox final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void showEvent(QShowEvent* event) override {
    for (QLabel* const label : findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    giveMnemonics(*this);
    QMessageBox::showEvent(event);
  }
};

}  // namespace zolt::desktop
