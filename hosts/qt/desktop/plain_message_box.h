#pragma once

#include <QLabel>
#include <QMessageBox>

namespace zolt::desktop {

/// Shows its texts as they are. They may hold names of files, and these may look like rich text.
class PlainMessageBox final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void showEvent(QShowEvent* event) override {
    for (QLabel* const label : findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    QMessageBox::showEvent(event);
  }
};

}  // namespace zolt::desktop
