#pragma once

#include <QKeySequence>
#include <QString>
#include <QTest>

namespace zolt {

/// Real key events: typed characters, and chords in braces, "ab{Ctrl+Z}".
inline void press(QWidget* widget, QString const& keys) {
  for (qsizetype i = 0; i < keys.size(); ++i) {
    qsizetype const end = keys[i] == u'{' ? keys.indexOf(u'}', i) : -1;
    if (end < 0) {
      QTest::keyClick(widget, keys[i].toLatin1());
    } else {
      QKeyCombination const chord = QKeySequence(keys.mid(i + 1, end - i - 1), QKeySequence::PortableText)[0];
      QTest::keyClick(widget, chord.key(), chord.keyboardModifiers());
      i = end;
    }
  }
}

}  // namespace zolt
