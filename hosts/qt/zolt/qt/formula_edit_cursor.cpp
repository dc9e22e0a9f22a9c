#include <algorithm>
#include <cstdlib>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/text.h"
#include "zolt/ved/tree/row_view.h"

// Caret and selection as a line edit has them: by position, and moved by calls of the program.

namespace zolt::qt {

namespace {

using MarksT = std::vector<field::ReadableTextS::MarkS>;

int positionOf(MarksT const& marks, math::ved::PlaceS place) {
  auto const found =
      std::find_if(marks.begin(), marks.end(), [&](auto const& mark) { return mark.place == place; });
  return int(found - marks.begin());
}

math::ved::PlaceS placeOf(MarksT const& marks, int position) {
  return marks[std::size_t(std::clamp(position, 0, int(marks.size()) - 1))].place;
}

MarksT marksOf(field::FormulaFieldC const& field) { return field::makeReadableText(field.crefView()).marks; }

}  // namespace

int FormulaEdit::cursorPosition() const {
  return positionOf(marksOf(*state_->field), state_->field->crefView().getSelection().caret);
}

int FormulaEdit::cursorPositionAt(QPoint pos) const {
  return positionOf(marksOf(*state_->field), state_->placeNear(pos));
}

void FormulaEdit::setSelection(int start, int length) {
  MarksT const marks = marksOf(*state_->field);
  int const last = int(marks.size()) - 1, from = std::clamp(start, 0, last);
  int const to = from + std::clamp(length, -from, last - from);
  state_->act([&] { return state_->field->setSelection({placeOf(marks, from), placeOf(marks, to)}); });
}

void FormulaEdit::deselect() {
  if (hasSelection()) runCommand(field::COMMAND_DROP_SELECTION);
}

bool FormulaEdit::hasSelection() const { return state_->field->crefView().isSelected(); }

QString FormulaEdit::selectedText() const { return toQString(state_->field->copy().plainText); }

int FormulaEdit::selectionStart() const {
  if (!hasSelection()) return -1;
  return positionOf(marksOf(*state_->field), inOneRow(state_->field->crefView().getSelection()).anchor);
}

int FormulaEdit::selectionEnd() const {
  if (!hasSelection()) return -1;
  return positionOf(marksOf(*state_->field), inOneRow(state_->field->crefView().getSelection()).caret);
}

int FormulaEdit::selectionLength() const { return selectionEnd() - selectionStart(); }

void FormulaEdit::cursorForward(bool mark, int steps) {
  field::CommandE const right = mark ? field::COMMAND_SELECT_RIGHT : field::COMMAND_RIGHT;
  field::CommandE const left = mark ? field::COMMAND_SELECT_LEFT : field::COMMAND_LEFT;
  state_->act([&] {
    bool moved = false;
    for (int i = std::abs(steps); i > 0 && state_->field->run(steps > 0 ? right : left); --i) moved = true;
    return moved;
  });
}

void FormulaEdit::cursorWordForward(bool mark) {
  runCommand(mark ? field::COMMAND_SELECT_WORD_RIGHT : field::COMMAND_WORD_RIGHT);
}

void FormulaEdit::cursorWordBackward(bool mark) {
  runCommand(mark ? field::COMMAND_SELECT_WORD_LEFT : field::COMMAND_WORD_LEFT);
}

void FormulaEdit::home(bool mark) {
  runCommand(mark ? field::COMMAND_SELECT_FORMULA_START : field::COMMAND_FORMULA_START);
}

void FormulaEdit::end(bool mark) {
  runCommand(mark ? field::COMMAND_SELECT_FORMULA_END : field::COMMAND_FORMULA_END);
}

void FormulaEdit::backspace() { runCommand(field::COMMAND_DELETE_LEFT); }

void FormulaEdit::del() { runCommand(field::COMMAND_DELETE_RIGHT); }

void FormulaEdit::insert(QString const& text) {
  field::ClipboardContentS content;
  content.plainText = toWstring(text);
  state_->paste(content);
}

}  // namespace zolt::qt
