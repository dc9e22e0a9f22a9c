#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>

namespace zolt::qt {

/// The letter that the text of a button or an entry gives to the keyboard; 0 when it gives none.
inline int letterOf(QString const& text) {
  QKeySequence const mnemonic = QKeySequence::mnemonic(text);
  return mnemonic.isEmpty() ? 0 : mnemonic[0].key();
}

/// Gives those of the buttons or entries (pointers to what has a `text`) that have no letter the first one of
/// their text that is neither another one's nor among `taken`.
template <class ItemsT>
void giveLetters(ItemsT const& items, QList<int> taken = {}) {
  for (auto const* const item : items) taken << letterOf(item->text());
  for (auto* const item : items) {
    QString const text = item->text();
    for (qsizetype i = 0; i < text.size() && letterOf(item->text()) == 0; ++i) {
      int const letter = text[i].toUpper().unicode();
      if (!text[i].isLetterOrNumber() || taken.contains(letter)) continue;
      taken << letter;
      item->setText(QString(text).insert(i, u'&'));
    }
  }
}

}  // namespace zolt::qt
