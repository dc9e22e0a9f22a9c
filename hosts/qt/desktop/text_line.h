#pragma once

#include <QTextEdit>

namespace zolt::desktop {

/// An editor for one paragraph without a history of its own. It wraps, and is always as high as its text, so
/// that all of it is seen.
class TextLine final : public QTextEdit {
  Q_OBJECT

 public:
  static constexpr int margin = 3;  // logical pixels around the text

  /// A longer text loses its end.
  explicit TextLine(int maxLength, QWidget* parent = nullptr);
  ~TextLine() override;

  QString text() const;
  /// Line ends become blanks. The caret is at the end afterwards.
  void setText(QString const& text);
  bool hasSelectedText() const { return textCursor().hasSelection(); }
  void enterAtEnd() { moveCursor(QTextCursor::End); }
  /// Puts the caret at the place nearest to `pos` (widget coordinates).
  void setCaretNear(QPoint pos);
  /// The caret's box in widget coordinates.
  QRect caretRectangle() const;

 signals:
  void returnPressed();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool canInsertFromMimeData(QMimeData const* source) const override;
  void insertFromMimeData(QMimeData const* source) override;

 private:
  void cutOff();
  void fit();

  int maxLength_;
};

}  // namespace zolt::desktop
