#include "zolt/field/detail/act.h"
#include "zolt/field/detail/input_places.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/selection_growth.h"
#include "zolt/ved/operators/operator_table_act.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

// The commands that move the caret come first, then those that move the end of the selection in the same way.

bool isMotion(CommandE command) { return command <= COMMAND_SELECT_FORMULA_END; }

bool selects(CommandE motion) { return motion >= COMMAND_SELECT_LEFT; }

/// How a motion moves what it moves.
CommandE caretMotionOf(CommandE motion) {
  static_assert(COMMAND_SELECT_FORMULA_END - COMMAND_SELECT_LEFT == COMMAND_FORMULA_END - COMMAND_LEFT);
  return selects(motion) ? static_cast<CommandE>(motion - COMMAND_SELECT_LEFT) : motion;
}

bool isVertical(CommandE command) {
  return isMotion(command) &&
         (caretMotionOf(command) == COMMAND_UP || caretMotionOf(command) == COMMAND_DOWN);
}

/// Whether the motion leaves a selection by dropping it, even when it leads nowhere.
bool dropsSelection(CommandE motion) {
  return !selects(motion) && motion != COMMAND_NEXT_SLOT && motion != COMMAND_PREVIOUS_SLOT;
}

unsigned long countFilledRows(Node4C const& construct) {
  unsigned long count = 0;
  for (unsigned long i = 0; i < construct.numChildren(); ++i)
    count += isEmptyRow(*construct.child(i)) ? 0 : 1;
  return count;
}

ScriptStepS stepOf(CommandE command) {
  for (auto const& [word, known] : script_commands) {
    if (known == command) return makeStep(word);
  }
  return makeStep(SCRIPT_COMMAND, commands()[command].name);
}

/// The act of a command on rows and columns.
PointerTC<OperatorBC> makeTableAct(CommandE command) {
  return new OperatorTableActC(commands()[command].name, static_cast<TableActE>(command - COMMAND_ROW_ABOVE),
                               0);
}

}  // namespace

bool FormulaFieldC::isEnabled(CommandE command) const {
  if (commands()[command].modifies && !view_.isEditable()) return false;
  if (isForCompletion(command)) return true;
  if (isMotion(command)) return isMotionEnabled(command);
  bool const selected = view_.isSelected();
  SelectionS const all = view_.getWhole();
  switch (command) {
    case COMMAND_SELECT_ALL:
      return all.anchor != all.caret && (anchor() != all.anchor || caret() != all.caret);
    case COMMAND_GROW_SELECTION: {
      SelectionS const grown = growSelection(view_);
      return grown.anchor != anchor() || grown.caret != caret();
    }
    case COMMAND_SHRINK_SELECTION:
      return !grown_.empty();
    case COMMAND_DROP_SELECTION:
    case COMMAND_CUT:
    case COMMAND_COPY:
      return selected;
    case COMMAND_DELETE_LEFT:
    case COMMAND_DELETE_WORD_LEFT:
      return selected || caret() != all.anchor;
    case COMMAND_DELETE_RIGHT:
    case COMMAND_DELETE_WORD_RIGHT:
      return selected || caret() != all.caret;
    case COMMAND_CLEAR:
      return all.anchor != all.caret;
    case COMMAND_UNDO:
      return view_.canUndo();
    case COMMAND_REDO:
      return view_.canRedo();
    case COMMAND_PASTE:
      return clipboard_->hasContent();
    default:
      return makeTableAct(command)->mayRun(view_.getSelection(), view_.crefOperatorList());
  }
}

bool FormulaFieldC::run(CommandE command) {
  if (auto const taken = runInCompletion(command, stepOf(command))) return *taken;
  ClipboardContentS content;
  if (command == COMMAND_PASTE) {
    content = clipboard_->read();
    // A recording must hold the pasted content unless the recorded commands copied it.
    if (recorded_ && acts_ == 0 && (content.bytes.empty() || content.bytes != copied_.bytes)) {
      return paste(content) != PASTE_REFUSED;
    }
  }
  bool const growth = command == COMMAND_GROW_SELECTION || command == COMMAND_SHRINK_SELECTION;
  ActC const act(*this, stepOf(command),
                 growth                ? ActC::KEEP_GROWTH
                 : isVertical(command) ? ActC::KEEP_COLUMN
                                       : ActC::KEEP_NOTHING);
  leaveCompletion();
  if (isMotion(command)) return runMotion(command);
  if (command == COMMAND_PASTE) return paste(content) != PASTE_REFUSED;
  if (!isEnabled(command)) return false;
  switch (command) {
    case COMMAND_SELECT_ALL:
      completeName();
      return select(view_.getWhole());
    case COMMAND_GROW_SELECTION:
      completeName();
      grown_.push_back({anchor(), caret()});
      return select(growSelection(view_));
    case COMMAND_SHRINK_SELECTION: {
      SelectionS const before = grown_.back();
      grown_.pop_back();
      return select(before);
    }
    case COMMAND_DROP_SELECTION:
      completeName();
      return placeCaret(caret());
    case COMMAND_COPY:
    case COMMAND_CUT: {
      copied_ = copy();
      SelectionS const selected = view_.getSelection();
      auto const formula = view_.crefRoot().makeRecord();
      clipboard_->write(copied_);
      if (command == COMMAND_COPY) return true;
      // A clipboard of a host's may have changed the formula meanwhile: only what was copied is deleted.
      auto const [anchor, caret] = view_.getSelection();
      bool const same = anchor == selected.anchor && caret == selected.caret &&
                        view_.crefRoot().makeRecord().get() == formula.get();
      return same && isEditable() && sendKey(KEY_BACKSPACE);
    }
    default:
      wordTyped_ = false;
      return runEdit(command);
  }
}

// ---- Motions -------------------------------------------------------------------------------------------

PlaceS FormulaFieldC::findMotionTarget(CommandE command, long& column) const {
  CommandE const motion = caretMotionOf(command);
  return selects(command) ? findSelectionTarget(motion, view_, view_.getSelection(), column)
                          : findTarget(motion, view_, caret(), column);
}

bool FormulaFieldC::isMotionEnabled(CommandE command) const {
  long column = column_;
  return (view_.isSelected() && dropsSelection(command)) || findMotionTarget(command, column);
}

bool FormulaFieldC::runMotion(CommandE command) {
  if (!isMotionEnabled(command)) return false;
  completeName();
  bool const drops = view_.isSelected() && dropsSelection(command);
  if (drops && (command == COMMAND_LEFT || command == COMMAND_RIGHT)) {
    TableBlockS const block = findBlock(view_.getSelection());
    auto const [start, end] = block ? placesOf(block) : inOneRow(view_.getSelection());
    return placeCaret(command == COMMAND_LEFT ? start : end);
  }
  PlaceS const target = findMotionTarget(command, column_);
  if (target) return select({selects(command) ? anchor() : target, target});
  return drops && placeCaret(caret());
}

// ---- Edits ---------------------------------------------------------------------------------------------

bool FormulaFieldC::sendKey(unsigned long code) {
  return view_.addEvent(EVENT_KEY, code, false, false, false, 0, 0);
}

bool FormulaFieldC::runEdit(CommandE command) {
  switch (command) {
    case COMMAND_DELETE_LEFT:
      return deleteLeft();
    case COMMAND_DELETE_RIGHT:
      return deleteRight();
    case COMMAND_DELETE_WORD_LEFT:
      return deleteItem(COMMAND_WORD_LEFT);
    case COMMAND_DELETE_WORD_RIGHT:
      return deleteItem(COMMAND_WORD_RIGHT);
    case COMMAND_CLEAR:
      sendKey(KEY_CLEAR);
      return view_.getWhole().anchor == view_.getWhole().caret;
    case COMMAND_UNDO:
      return undoAct();
    case COMMAND_REDO:
      return redoAct();
    default:
      return view_.insertOperator(makeTableAct(command));
  }
}

bool FormulaFieldC::undoAct() {
  bool done = false;
  for (bool continues = true; continues;) {
    continues = view_.undoContinues();
    if (!view_.undo()) break;
    done = true;
  }
  return done;
}

bool FormulaFieldC::redoAct() {
  bool const done = view_.redo();
  while (done && view_.redoContinues() && view_.redo()) {
  }
  return done;
}

/// Lets the construct around the caret lose what is in none of its rows, if its rows end at the caret.
bool FormulaFieldC::deleteMark() {
  auto const [op, target] =
      findByInsideSign(view_.crefOperatorList(), caret(), static_cast<char16_t>(KEY_BACKSPACE));
  return op && !target && view_.insertOperator(op);
}

bool FormulaFieldC::deleteLeft() {
  if (view_.isSelected()) return sendKey(KEY_BACKSPACE);
  if (deleteMark()) return true;
  PlaceS const at = caret();
  Node4C const* const row = at.node->getParent();
  unsigned long const count = row->numChildren();
  if (at.pos > 0 && isContinuation(at.node->crefText()[at.pos - 1])) {
    long column = no_column;
    return deleteRange(findTarget(COMMAND_LEFT, view_, at, column), at);
  }
  Node4C const* const around = at.pos == 0 && !at.node->goLeft() ? enclosingItem(*at.node) : nullptr;
  if (around && countColumns(*around) == 0 && countFilledRows(*around) == 1) {
    // The construct leaves its content beside what is around it.
    PlacePathS const begin = pathOf(placeBefore(*around));
    PlacePathS const end = pathOf(placeAfter(*around), COUNT_FROM_END);
    GroupC group(*this);
    return group.end(sendKey(KEY_BACKSPACE) && separate(placeAt(view_.crefRoot(), begin),
                                                        placeAt(view_.crefRoot(), end, COUNT_FROM_END)));
  }
  sendKey(KEY_BACKSPACE);
  bool const same = caret() == at && at.node->getParent() == row && row->numChildren() == count;
  // The view deletes nothing where that would remove more than one thing; then the caret only moves.
  return !same || runMotion(COMMAND_OUT_LEFT);
}

bool FormulaFieldC::deleteRight() {
  if (view_.isSelected()) return sendKey(KEY_DELETE);
  if (deleteMark()) return true;
  PlaceS const at = caret();
  if (at.pos < at.node->sizeText()) {
    long column = no_column;
    PlaceS const end = findTarget(COMMAND_RIGHT, view_, at, column);
    return end.pos == at.pos + 1 ? sendKey(KEY_DELETE) : deleteRange(at, end);
  }
  Node4C const* const right = at.node->goRight();
  if (right && isConstruct(right->getType())) {
    return hasEmptyRows(*right) ? deleteRange(at, placeAfter(*right))
                                : placeCaret(rowStart(*right->child(0)));
  }
  if (right) return isTypedBracket(right->getType()) ? sendKey(KEY_DELETE) : placeCaret(placeAfter(*right));
  Node4C const* const around = enclosingItem(*at.node);
  if (!around) return false;
  if (hasEmptyRows(*around)) return deleteRange(placeBefore(*around), placeAfter(*around));
  Node4C const* const nextRow = at.node->getParent()->goRight();
  return placeCaret(nextRow ? rowStart(*nextRow) : placeAfter(*around));
}

bool FormulaFieldC::deleteItem(CommandE motion) {
  bool const left = motion == COMMAND_WORD_LEFT;
  PlaceS const at = caret();
  long column = no_column;
  PlaceS const target = findTarget(motion, view_, at, column);
  bool const inRow = target && target.node->getParent() == at.node->getParent();
  if (view_.isSelected() || !inRow) return left ? deleteLeft() : deleteRight();
  return deleteRange(target, at);
}

}  // namespace zolt::field
