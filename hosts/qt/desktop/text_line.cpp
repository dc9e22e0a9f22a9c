#include "hosts/qt/desktop/text_line.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace zolt::desktop {

namespace {

QString inOneParagraph(QString text) {
  for (QChar const end :
       {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)}) {
    text.replace(end, u' ');
  }
  return text;
}

}  // namespace

TextLine::TextLine(int maxLength, QWidget* parent) : QTextEdit(parent), maxLength_(maxLength) {
  setAcceptRichText(false);
  setUndoRedoEnabled(false);
  setTabChangesFocus(true);
  setFrameShape(QFrame::NoFrame);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setAutoFillBackground(false);
  document()->setDocumentMargin(margin);
  connect(this, &QTextEdit::textChanged, this, &TextLine::cutOff);
  connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
          &TextLine::fit);
  fit();
}

TextLine::~TextLine() = default;

QString TextLine::text() const {
  // The plain text of the toolkit would have blanks for no-break spaces.
  return inOneParagraph(document()->toRawText());
}

void TextLine::setText(QString const& text) {
  setPlainText(inOneParagraph(text));
  enterAtEnd();
}

void TextLine::cutOff() {
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  if (end.position() <= maxLength_) return;
  end.setPosition(maxLength_);
  end.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
  end.removeSelectedText();
}

void TextLine::fit() { setFixedHeight(int(std::ceil(document()->size().height()))); }

void TextLine::setCaretNear(QPoint pos) {
  QPoint const inside(pos.x(), std::clamp(pos.y(), margin, std::max(margin, height() - margin - 1)));
  setTextCursor(cursorForPosition(viewport()->mapFromParent(inside)));
}

QRect TextLine::caretRectangle() const {
  QRect const caret = cursorRect();
  return {viewport()->mapToParent(caret.topLeft()), caret.size()};
}

bool TextLine::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    // The history is the sheet's.
    auto* const key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
      event->ignore();
      return true;
    }
  }
  return QTextEdit::event(event);
}

void TextLine::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      emit returnPressed();
      return;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      event->ignore();
      return;
    case Qt::Key_Up:
    case Qt::Key_Down: {
      // At its edge the key leads to the next line of the sheet.
      bool const up = event->key() == Qt::Key_Up;
      QTextCursor caret = textCursor();
      if (event->modifiers() & ~Qt::KeypadModifier ||
          caret.movePosition(up ? QTextCursor::Up : QTextCursor::Down)) {
        break;
      }
      event->ignore();
      return;
    }
    default:
      break;
  }
  QTextEdit::keyPressEvent(event);
}

void TextLine::wheelEvent(QWheelEvent* event) { event->ignore(); }

void TextLine::focusOutEvent(QFocusEvent* event) {
  QTextEdit::focusOutEvent(event);
  if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) return;
  QTextCursor caret = textCursor();
  caret.clearSelection();
  setTextCursor(caret);
}

bool TextLine::canInsertFromMimeData(QMimeData const* source) const { return source->hasText(); }

void TextLine::insertFromMimeData(QMimeData const* source) {
  textCursor().insertText(inOneParagraph(source->text()).left(maxLength_));
  ensureCursorVisible();
}

}  // namespace zolt::desktop
