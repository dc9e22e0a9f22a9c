#include "hosts/qt/desktop/mnemonics.h"

#include <QKeySequence>
#include <QPushButton>

namespace zolt::desktop {

namespace {

int letterOf(QString const& text) {
  QKeySequence const mnemonic = QKeySequence::mnemonic(text);
  return mnemonic.isEmpty() ? 0 : mnemonic[0].key();
}

}  // namespace

void giveMnemonics(QWidget& dialog) {
  QList<QPushButton*> const buttons = dialog.findChildren<QPushButton*>();
  QList<int> taken;
  for (QPushButton const* const button : buttons) taken << letterOf(button->text());
  for (QPushButton* const button : buttons) {
    QString const text = button->text();
    for (qsizetype i = 0; i < text.size() && letterOf(button->text()) == 0; ++i) {
      int const letter = text[i].toUpper().unicode();
      if (!text[i].isLetterOrNumber() || taken.contains(letter)) continue;
      taken << letter;
      button->setText(QString(text).insert(i, u'&'));
    }
  }
}

}  // namespace zolt::desktop
