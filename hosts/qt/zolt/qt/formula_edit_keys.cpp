#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <algorithm>

#include "zolt/field/surrounding_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

/// The chord in the form of the table of commands. A Mac's Command key is Ctrl in Qt as well.
oss::wstring chordOf(QKeyEvent const& event) {
  QString key;
  Qt::KeyboardModifiers modifiers = event.modifiers();
  switch (event.key()) {
    case Qt::Key_Backtab:
      key = QStringLiteral("Tab");
      modifiers |= Qt::ShiftModifier;
      break;
    case Qt::Key_Delete:
      key = QStringLiteral("Delete");
      break;
    case Qt::Key_PageUp:
      key = QStringLiteral("PageUp");
      break;
    case Qt::Key_PageDown:
      key = QStringLiteral("PageDown");
      break;
    case Qt::Key_Insert:
      key = QStringLiteral("Insert");
      break;
    case Qt::Key_Escape:
      key = QStringLiteral("Escape");
      break;
    case Qt::Key_Return:
      key = QStringLiteral("Enter");
      break;
    default:
      key = QKeySequence(event.key()).toString(QKeySequence::PortableText);
  }
  QString chord;
  if (modifiers & Qt::ControlModifier) chord += QStringLiteral("Ctrl+");
  if (modifiers & Qt::AltModifier) chord += QStringLiteral("Alt+");
  if (modifiers & Qt::ShiftModifier) chord += QStringLiteral("Shift+");
  return toWstring(chord + key);
}

/// How much of the row an input method is told of, on either side of the caret.
constexpr int input_method_reach = 256;

struct PlatformKeyS {
  QKeySequence::StandardKey key;
  field::CommandE command;
};

/// Keys that platforms have in addition to those of the table.
constexpr PlatformKeyS platform_keys[] = {
    {QKeySequence::Undo, field::COMMAND_UNDO},
    {QKeySequence::Redo, field::COMMAND_REDO},
    {QKeySequence::Cut, field::COMMAND_CUT},
    {QKeySequence::Copy, field::COMMAND_COPY},
    {QKeySequence::Paste, field::COMMAND_PASTE},
    {QKeySequence::SelectAll, field::COMMAND_SELECT_ALL},
    {QKeySequence::MoveToNextWord, field::COMMAND_WORD_RIGHT},
    {QKeySequence::MoveToPreviousWord, field::COMMAND_WORD_LEFT},
    {QKeySequence::MoveToStartOfLine, field::COMMAND_HOME},
    {QKeySequence::MoveToEndOfLine, field::COMMAND_END},
    {QKeySequence::MoveToStartOfDocument, field::COMMAND_FORMULA_START},
    {QKeySequence::MoveToEndOfDocument, field::COMMAND_FORMULA_END},
    {QKeySequence::SelectNextWord, field::COMMAND_SELECT_WORD_RIGHT},
    {QKeySequence::SelectPreviousWord, field::COMMAND_SELECT_WORD_LEFT},
    {QKeySequence::SelectStartOfLine, field::COMMAND_SELECT_HOME},
    {QKeySequence::SelectEndOfLine, field::COMMAND_SELECT_END},
    {QKeySequence::SelectStartOfDocument, field::COMMAND_SELECT_FORMULA_START},
    {QKeySequence::SelectEndOfDocument, field::COMMAND_SELECT_FORMULA_END},
    {QKeySequence::DeleteStartOfWord, field::COMMAND_DELETE_WORD_LEFT},
    {QKeySequence::DeleteEndOfWord, field::COMMAND_DELETE_WORD_RIGHT},
    {QKeySequence::Delete, field::COMMAND_DELETE_RIGHT},
    {QKeySequence::Backspace, field::COMMAND_DELETE_LEFT},
};

/// Some platforms have editing keys like Ctrl+D in addition, which programs use for commands of their own.
bool isLeftToPrograms(QKeyEvent const& event) {
  return event.modifiers() & Qt::ControlModifier && event.key() > Qt::Key_Space &&
         event.key() <= Qt::Key_AsciiTilde;
}

std::optional<field::CommandE> commandOf(QKeyEvent const& event) {
  if (field::CommandS const* const command = field::findCommandForKeys(chordOf(event))) {
    return command->command;
  }
  if (isLeftToPrograms(event)) return std::nullopt;
  for (PlatformKeyS const& entry : platform_keys) {
    if (const_cast<QKeyEvent&>(event).matches(entry.key)) return entry.command;
  }
  return std::nullopt;
}

bool isTypedText(QKeyEvent const& event) {
  QString const text = event.text();
  if (text.isEmpty() || !(text.at(0).isPrint() || text.at(0).isSurrogate())) return false;
#ifdef Q_OS_MACOS
  // The Option key does what AltGr does on other keyboards.
  return !(event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
#else
  // Ctrl and Alt together are AltGr on platforms that have no other way to report it; each alone is for
  // shortcuts.
  bool const ctrl = event.modifiers() & Qt::ControlModifier, alt = event.modifiers() & Qt::AltModifier;
  return ctrl == alt && !(event.modifiers() & Qt::MetaModifier);
#endif
}

/// Commands whose keys go to the parent widget when the formula has no use for them.
bool isSharedWithParent(field::CommandE command) {
  return command == field::COMMAND_UP || command == field::COMMAND_DOWN;
}

/// Commands on rows and columns, whose keys mean something else outside of tables.
bool isForTables(field::CommandE command) { return command >= field::COMMAND_ROW_ABOVE; }

bool isHistory(field::CommandE command) {
  return command == field::COMMAND_UNDO || command == field::COMMAND_REDO;
}

}  // namespace

std::optional<field::CommandE> FormulaEdit::StateS::commandFor(QKeyEvent const& event) const {
  auto const command = commandOf(event);
  bool const isOutside = command && isForTables(*command) && !field->isEnabled(field::COMMAND_DELETE_ROWS);
  return isOutside ? std::nullopt : command;
}

bool FormulaEdit::event(QEvent* event) {
  bool const isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
  if (isKey && state_->isForCompletion(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    if (event->type() == QEvent::KeyPress) state_->giveToCompletion(*static_cast<QKeyEvent*>(event));
    return true;
  }
  if (event->type() == QEvent::ShortcutOverride) {
    auto* const key = static_cast<QKeyEvent*>(event);
    auto const command = state_->commandFor(*key);
    bool const ours = command == field::COMMAND_DROP_SELECTION ? false
                      : command ? !(isHistory(*command) && !isUndoRedoEnabled()) &&
                                      !(field::commands()[*command].modifies && isReadOnly())
                                : isTypedText(*key) && !isReadOnly();
    if (ours) {
      event->accept();
      return true;
    }
  } else if (event->type() == QEvent::KeyPress) {
    // The key is taken here before Qt uses it to move the focus.
    auto* const key = static_cast<QKeyEvent*>(event);
    auto const command = state_->commandFor(*key);
    bool const slots_ = command == field::COMMAND_NEXT_SLOT || command == field::COMMAND_PREVIOUS_SLOT;
    QPointer<FormulaEdit> const alive(this);
    if (slots_ && !isReadOnly() && (runCommand(*command) || !alive)) {
      event->accept();
      return true;
    }
  }
  if (event->type() == QEvent::Leave) state_->hoverBar({-1, -1});
  return EditField::event(event);
}

void FormulaEdit::keyPressEvent(QKeyEvent* event) {
  if (auto const command = state_->commandFor(*event)) {
    if (isHistory(*command) && !isUndoRedoEnabled()) {
      event->ignore();
    } else {
      bool const taken = runCommand(*command);
      // The key that drops a selection also closes a dialog, at once, as in a line edit.
      bool const goesOn = *command == field::COMMAND_DROP_SELECTION;
      event->setAccepted(!goesOn && (taken || !isSharedWithParent(*command)));
    }
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    QPointer<FormulaEdit> const alive(this);
    bool const done = isEmpty() || check();
    // A dialog's default button reacts to the same key, and would take an incomplete formula with it.
    event->setAccepted(!done);
    if (!alive) return;
    if (done) emit returnPressed();
    if (!done) emit returnRefused();
    if (done && alive) emit editingFinished();
    return;
  }
  if (!isTypedText(*event)) {
    EditField::keyPressEvent(event);
    return;
  }
  if (isReadOnly()) {
    event->ignore();
    return;
  }
  oss::wstring const text = toWstring(event->text());
  QPointer<FormulaEdit> const alive(this);
  event->accept();
  state_->take([&] {
    return text.size() == 1 ? state_->field->typeCharacter(text[0]) : state_->field->insertText(text);
  });
  if (alive) state_->suggestLater();
}

bool FormulaEdit::StateS::take(std::function<bool()> const& action) {
  QPointer<FormulaEdit> const alive(&edit);
  bool const taken = act(action);
  if (taken || !alive) return taken;
  QString told = FormulaEdit::tr("This cannot go here");
  if (field::RefusalS refusal; field->takeRefusal(refusal)) {
    told = toQString(refusal.message);
    faultyBox = refusal.box;
    emit alive->errorOccurred(refusal.cause, told, int(refusal.begin), int(refusal.end));
  }
  if (alive) emit alive->inputRejected(told);
  return taken;
}

void FormulaEdit::inputMethodEvent(QInputMethodEvent* event) {
  if (isReadOnly()) {
    event->ignore();
    return;
  }
  event->accept();
  QPointer<FormulaEdit> const alive(this);
  state_->take([&] { return state_->takeComposed(*event); });
  if (alive) state_->restartBlinking();
}

bool FormulaEdit::StateS::takeComposed(QInputMethodEvent const& event) {
  // Positions count from the caret without the text that was composed so far.
  field->compose({}, 0);
  composedFormats.clear();
  composedCaretShown = true;
  auto const from = [&](int distance) {
    return field::placeAtDistance(field->crefView().getSelection().caret, distance);
  };
  bool taken = true;
  bool const replaces = event.replacementLength() > 0;
  if (replaces) {
    field->setSelection(
        {from(event.replacementStart()), from(event.replacementStart() + event.replacementLength())});
  }
  oss::wstring const text = toWstring(event.commitString());
  if (!text.empty()) {
    taken = field->insertText(text);
  } else if (replaces) {
    taken = field->run(field::COMMAND_DELETE_LEFT);
  }
  oss::wstring const composed = toWstring(event.preeditString());
  auto caret = static_cast<unsigned long>(composed.size());
  for (QInputMethodEvent::Attribute const& attribute : event.attributes()) {
    if (attribute.type == QInputMethodEvent::Cursor) {
      caret = static_cast<unsigned long>(std::max(0, attribute.start));
      composedCaretShown = composed.empty() || attribute.length != 0;
    } else if (attribute.type == QInputMethodEvent::TextFormat) {
      composedFormats.append(attribute);
    } else if (attribute.type == QInputMethodEvent::Selection) {
      int const here = int(field::makeSurroundingText(field->crefView(), input_method_reach).caret);
      field->setSelection({from(attribute.start - here), from(attribute.start + attribute.length - here)});
    }
  }
  return composed.empty() ? taken : field->compose(composed, caret);
}

QVariant FormulaEdit::inputMethodQuery(Qt::InputMethodQuery query) const {
  return inputMethodQuery(query, QVariant());
}

QVariant FormulaEdit::inputMethodQuery(Qt::InputMethodQuery query, QVariant const& argument) const {
  math::ved::ViewZNT4C const& view = state_->field->crefView();
  auto const around = [&] {
    int const wanted =
        argument.canConvert<int>() && argument.toInt() > 0 ? argument.toInt() : input_method_reach;
    return field::makeSurroundingText(view, static_cast<unsigned long>(wanted));
  };
  switch (query) {
    case Qt::ImEnabled:
      return !isReadOnly();
    case Qt::ImReadOnly:
      return isReadOnly();
    case Qt::ImCursorRectangle:
      return caretRectangle();
    case Qt::ImAnchorRectangle:
      return state_->toPixels(state_->field->getAnchorRectangle());
    case Qt::ImCurrentSelection:
      return toQString(state_->field->copy().plainText);
    case Qt::ImSurroundingText:
      return toQString(around().text);
    case Qt::ImCursorPosition:
      return int(around().caret);
    case Qt::ImAnchorPosition:
      return int(around().anchor);
    case Qt::ImTextBeforeCursor:
      return toQString(around().before());
    case Qt::ImTextAfterCursor:
      return toQString(around().after());
    default:
      return EditField::inputMethodQuery(query);
  }
}

void FormulaEdit::focusInEvent(QFocusEvent* event) {
  state_->restartBlinking();
  state_->showCompletion();
  update();
  EditField::focusInEvent(event);
  switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
      selectAll();
      break;
    default:
      break;
  }
}

void FormulaEdit::focusOutEvent(QFocusEvent* event) {
  state_->blinkTimer.stop();
  state_->suggestionTimer.stop();
  state_->showCompletion();
  state_->field->compose({}, 0);
  update();
  bool const done = event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason;
  QPointer<FormulaEdit> const alive(this);
  if (done) {
    state_->act([&] {
      state_->field->completeName();
      return true;
    });
  }
  if (alive && done) emit editingFinished();
  if (alive) EditField::focusOutEvent(event);
}

}  // namespace zolt::qt
