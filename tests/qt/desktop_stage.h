#pragma once

// What the tests of the desktop program share.

#include <QAbstractButton>
#include <QApplication>
#include <QKeySequence>
#include <QLabel>
#include <QSet>
#include <QTimer>
#include <memory>

#include "hosts/qt/desktop/sheet.h"
#include "zolt/qt/formula_fonts.h"

namespace zolt::desktop {

inline QByteArray sampleBytes() {
  return "zolt-sheet 1\n"
         "heading Ünicode\n"
         "text \n"
         "formula +(a,b)\n"
         "formula *(2,x)\n"
         "tree [\"2x\"]\n"
         "formula\n"
         "tree [\"a+\", /<[\"b\"] ; [\"\"]>, \"\"]\n"
         "formula\n"
         "end 6\n";
}

inline SheetLine formulaLine(char const* prefix) {
  return {LineKind::Formula, {}, QLatin1String(prefix), {}};
}

/// Presses the button of that text whenever a dialog comes up that has it, and keeps what the dialog said.
class DialogAnswer final : public QObject {
 public:
  explicit DialogAnswer(char const* button) {
    connect(&timer_, &QTimer::timeout, this, [this, button = QLatin1String(button)] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (!dialog) return;
      for (auto* const each : dialog->findChildren<QAbstractButton*>()) {
        if (QString(each->text()).remove(u'&') != button) continue;
        for (auto const* const label : dialog->findChildren<QLabel*>()) {
          said += label->text() + u'\n';
          isPlain = isPlain && label->textFormat() == Qt::PlainText;
        }
        ++count;
        letters.clear();
        for (auto const* const one : dialog->findChildren<QAbstractButton*>()) {
          letters << QKeySequence::mnemonic(one->text()).toString();
        }
        // The click is queued, so that this timer continues to run while the answer opens another dialog.
        QMetaObject::invokeMethod(each, "click", Qt::QueuedConnection);
        return;
      }
    });
    timer_.start(5);
  }

  QString said;
  int count = 0;
  QSet<QString> letters;  // of its buttons
  bool isPlain = true;    // no label takes names of files for rich text

 private:
  QTimer timer_;
};

inline std::shared_ptr<qt::FormulaFonts> fonts() {
  QString error;
  return qt::FormulaFonts::share(error);
}

}  // namespace zolt::desktop
