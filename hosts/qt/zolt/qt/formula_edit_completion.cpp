#include <QKeyEvent>
#include <QKeySequence>

#include "zolt/qt/completion_list.h"
#include "zolt/qt/formula_edit_state.h"

namespace zolt::qt {

namespace {

constexpr int suggestion_delay = 400;  // ms

}  // namespace

void FormulaEdit::StateS::showCompletion() {
  field::CompletionC const& completion = field->crefCompletion();
  if (!completion.isOpen() || !edit.hasFocus() || !edit.isVisible()) {
    if (completions) completions->hide();
    return;
  }
  if (!completions) {
    completions = new CompletionList(edit, fonts);
    QObject::connect(completions, &CompletionList::picked, &edit, [this](int number) {
      act([&] { return field->acceptCompletion(std::size_t(number)); });
    });
    QObject::connect(
        completions, &CompletionList::displaced, &edit, [this] { showCompletion(); }, Qt::QueuedConnection);
  }
  completions->showEntries(completion, toPixels(field->getCompletionRectangle()));
}

void FormulaEdit::StateS::suggestLater() {
  if (field->getOptions().suggestions && !edit.isReadOnly()) suggestionTimer.start(suggestion_delay, &edit);
}

void FormulaEdit::StateS::suggest() {
  suggestionTimer.stop();
  if (field->crefCompletion().isOpen() || !edit.hasFocus()) return;
  field->suggestNames();
  showCompletion();
}

bool FormulaEdit::StateS::isForCompletion(QKeyEvent const& event) const {
  field::CompletionC const& completion = field->crefCompletion();
  if (!completion.isOpen()) return false;
  // Else a window that has a history of its own would take it.
  if (event.matches(QKeySequence::Undo)) return completion.getKind() == field::COMPLETION_OF_COMMAND;
  if (event.modifiers() & ~Qt::KeypadModifier) return false;
  bool const accepts = completion.getKind() == field::COMPLETION_OF_COMMAND ||
                       completion.getCurrent() != field::CompletionC::none;
  switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Down:
      return true;
    case Qt::Key_Up:
    case Qt::Key_Tab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return accepts;
    default:
      return false;
  }
}

void FormulaEdit::StateS::giveToCompletion(QKeyEvent const& event) {
  act([&] {
    if (event.matches(QKeySequence::Undo)) return field->run(field::COMMAND_UNDO);
    switch (event.key()) {
      case Qt::Key_Escape:
        return field->run(field::COMMAND_DROP_SELECTION);
      case Qt::Key_Down:
        return field->run(field::COMMAND_DOWN);
      case Qt::Key_Up:
        return field->run(field::COMMAND_UP);
      default:
        return field->acceptCompletion(field->crefCompletion().getCurrent());
    }
  });
}

field::InputOptionsS FormulaEdit::inputOptions() const { return state_->field->getOptions(); }

void FormulaEdit::setInputOptions(field::InputOptionsS const& options) {
  setDecimalComma(options.decimalComma);
  state_->change([&] { state_->field->setOptions(options); });
}

}  // namespace zolt::qt
