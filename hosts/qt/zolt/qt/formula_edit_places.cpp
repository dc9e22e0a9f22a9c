#include <QAccessible>
#include <QLocale>
#include <QMetaMethod>
#include <algorithm>
#include <utility>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_accessible.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"
#include "zolt/ved/tree/node4.h"

// These members find places of the caret by position and by offset, without moving it.

namespace zolt::qt {

namespace {

unsigned long toOffset(int offset) { return static_cast<unsigned long>(std::max(0, offset)); }

}  // namespace

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

QString FormulaEdit::announcement() const { return state_->announced; }

QString FormulaEdit::readableText() const { return toQString(state_->readableText().text); }

QString FormulaEdit::selectedWords() const {
  math::ved::ViewZNT4C const& view = state_->field->crefView();
  if (!hasSelection()) return {};
  return toQString(
      field::makeReadableText(view.getSelection(), view.crefOperatorList(), state_->speechStyle()).text);
}

FormulaEdit::CaretOffsets FormulaEdit::caretOffsets() const {
  math::ved::ViewZNT4C const& view = state_->field->crefView();
  field::ReadableTextS const text = state_->readableText();
  auto const [anchor, caret] = view.getSelection();
  return {int(text.offsetOf(anchor ? anchor : caret)), int(text.offsetOf(caret))};
}

FormulaEdit::CaretOffsets FormulaEdit::stepAt(int offset) const {
  field::ReadableTextS const text = state_->readableText();
  math::ved::PlaceS const begin = text.placeAt(toOffset(offset)), end = text.placeAfter(toOffset(offset));
  return {int(text.offsetOf(begin)), int(end ? text.offsetOf(end) : text.text.size())};
}

void FormulaEdit::selectOffsets(int anchor, int caret) {
  field::ReadableTextS const text = state_->readableText();
  // What is between two words belongs to the first, so that a stretch takes in the words that it ends in.
  auto const endAt = [&](int offset) {
    math::ved::PlaceS const place = offset > 0 ? text.placeAfter(toOffset(offset - 1)) : math::ved::PlaceS();
    return place ? place : text.placeAt(toOffset(offset));
  };
  math::ved::PlaceS const from = anchor <= caret ? text.placeAt(toOffset(anchor)) : endAt(anchor);
  math::ved::PlaceS const to = anchor < caret ? endAt(caret) : text.placeAt(toOffset(caret));
  state_->act([&] { return state_->field->setSelection({from, to}); });
}

QRect FormulaEdit::placeRectangle(int offset) const {
  field::ReadableTextS const text = state_->readableText();
  math::ved::PlaceS const place = text.placeAt(toOffset(offset));
  return state_->toPixels(state_->field->crefView().getRectangle({place, place}));
}

QRect FormulaEdit::characterRectangle(int offset) const {
  field::ReadableTextS const text = state_->readableText();
  math::ved::PlaceS const begin = text.placeAt(toOffset(offset)), end = text.placeAfter(toOffset(offset));
  bool const inRow = end && end.node->getParent() == begin.node->getParent();
  return state_->toPixels(state_->field->crefView().getRectangle({begin, inRow ? end : begin}));
}

int FormulaEdit::offsetNear(QPoint pos) const {
  math::ved::PlaceS const place = state_->placeNear(pos);
  return int(state_->readableText().offsetOf(place));
}

void FormulaEdit::revealOffset(int offset) {
  field::ReadableTextS const text = state_->readableText();
  math::ved::PlaceS const place = text.placeAt(toOffset(offset));
  state_->reveal(state_->field->crefView().getRectangle({place, place}));
  update();
}

}  // namespace zolt::qt
