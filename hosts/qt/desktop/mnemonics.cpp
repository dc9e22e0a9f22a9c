#include "hosts/qt/desktop/mnemonics.h"

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>

namespace zolt::desktop {

namespace {

int letterOf(QString const& text) {
  QKeySequence const mnemonic = QKeySequence::mnemonic(text);
  return mnemonic.isEmpty() ? 0 : mnemonic[0].key();
}

}  // namespace

void giveMnemonics(QWidget& dialog) {
  QList<QAbstractButton*> const buttons = dialog.findChildren<QAbstractButton*>();
  QList<int> taken;
  for (QAbstractButton const* const button : buttons) taken << letterOf(button->text());
  for (QLabel const* const label : dialog.findChildren<QLabel*>()) {
    if (label->buddy()) taken << letterOf(label->text());
  }
  for (QAbstractButton* const button : buttons) {
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
