#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

namespace zolt::qt {

class FormulaEdit;

/// The formula of a field as the text in words that assistive technology has of it. Offsets count the
/// characters of `FormulaEdit::readableText`; those that are out of range count as the nearest end.
class SpokenFormula {
 public:
  /// Two places of the caret.
  struct Offsets {
    int anchor = 0;
    int caret = 0;
  };

  explicit SpokenFormula(FormulaEdit& edit) : edit_(edit) {}

  /// What a listener has been told last about the caret: "into the denominator"; empty where the events of
  /// texts tell all.
  QString announcement() const;
  Offsets caretOffsets() const;  ///< both are equal when nothing is selected
  /// The two places of the caret between which the character at `offset` is; the last one at the end.
  Offsets stepAt(int offset) const;
  /// Selects between the places of the caret that are nearest to the offsets.
  void select(int anchor, int caret);
  /// The box around what the character at `offset` says, in widget coordinates.
  QRect characterRectangle(int offset) const;
  int offsetNear(QPoint pos) const;
  /// Scrolls until the caret could be seen at `offset`.
  void reveal(int offset);

 private:
  FormulaEdit& edit_;
};

}  // namespace zolt::qt
