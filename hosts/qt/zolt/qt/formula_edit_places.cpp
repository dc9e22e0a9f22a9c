#include <QAccessible>
#include <QLocale>
#include <QMetaMethod>
#include <utility>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_accessible.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"
#include "zolt/ved/tree/node4.h"

// These members say the formula, and find places of the caret without moving it.

namespace zolt::qt {

math::ved::PlaceS FormulaEdit::StateS::placeNear(QPointF pos) {
  QPoint const units = toUnits(pos);
  return field->findPlace(units.x(), units.y());
}

exchange::SpeechStyleS FormulaEdit::StateS::speechStyle() const {
  bool const isGerman = edit.locale().language() == QLocale::German;
  return {isGerman ? exchange::SPEECH_GERMAN : exchange::SPEECH_ENGLISH,
          static_cast<exchange::SpeechVerbosityE>(speechVerbosity)};
}

field::ReadableTextS FormulaEdit::StateS::readableText() const {
  return field::makeReadableText(field->crefView(), speechStyle());
}

void FormulaEdit::StateS::notifyListener(bool formulaChanged) {
  if (!QAccessible::isActive() && !edit.isSignalConnected(QMetaMethod::fromSignal(&FormulaEdit::spoken)))
    return;
  exchange::SpeechStyleS const style = speechStyle();
  if (speech.getStyle() != style) speech = field::CaretSpeechC(style);
  bool const isListening = speech.isListening();
  if (!isListening) speech.listen(field->crefView());
  math::ved::ViewZNT4C const& view = field->crefView();
  field::SpokenMoveS move;
  if (formulaChanged) {
    notifyValue(edit);
    if (isListening) {
      field::SpokenEditS const change = speech.tellEdit(view);
      notifyTextChange(edit, change);
      move = {change.said, change.isPlace};
    }
  } else {
    move = speech.tellMove(view);
  }
  notifyCaret(edit);
  QString const said = toQString(move.said);
  bool const wasAnnounced = !announced.isEmpty();
  announced = move.isPlace ? said : QString();
  if (move.isPlace || wasAnnounced) announce(edit, announced);
  if (!said.isEmpty()) emit edit.spoken(said);
}

FormulaEdit::SpeechVerbosity FormulaEdit::speechVerbosity() const { return state_->speechVerbosity; }

void FormulaEdit::setSpeechVerbosity(SpeechVerbosity verbosity) {
  if (std::exchange(state_->speechVerbosity, verbosity) != verbosity) emit speechVerbosityChanged(verbosity);
}

QString FormulaEdit::readableText() const { return toQString(state_->readableText().text); }

QString FormulaEdit::selectedWords() const {
  math::ved::ViewZNT4C const& view = state_->field->crefView();
  if (!hasSelection()) return {};
  return toQString(
      field::makeReadableText(view.getSelection(), view.crefOperatorList(), state_->speechStyle()).text);
}

}  // namespace zolt::qt
