#include "zolt/field/detail/act.h"
#include "zolt/field/detail/stretch.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/selection_growth.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

enum ActionE { ACTION_MOVE, ACTION_SELECT, ACTION_OTHER };

/// A command that moves the caret or the end of the selection.
struct MotionS {
  CommandE command;
  ActionE action;
  CaretMotionE motion;
};

constexpr MotionS motions[] = {
    {COMMAND_LEFT, ACTION_MOVE, MOTION_LEFT},
    {COMMAND_RIGHT, ACTION_MOVE, MOTION_RIGHT},
    {COMMAND_UP, ACTION_MOVE, MOTION_UP},
    {COMMAND_DOWN, ACTION_MOVE, MOTION_DOWN},
    {COMMAND_WORD_LEFT, ACTION_MOVE, MOTION_WORD_LEFT},
    {COMMAND_WORD_RIGHT, ACTION_MOVE, MOTION_WORD_RIGHT},
    {COMMAND_HOME, ACTION_MOVE, MOTION_HOME},
    {COMMAND_END, ACTION_MOVE, MOTION_END},
    {COMMAND_FORMULA_START, ACTION_MOVE, MOTION_FORMULA_START},
    {COMMAND_FORMULA_END, ACTION_MOVE, MOTION_FORMULA_END},
    {COMMAND_NEXT_SLOT, ACTION_MOVE, MOTION_NEXT_SLOT},
    {COMMAND_PREVIOUS_SLOT, ACTION_MOVE, MOTION_PREVIOUS_SLOT},
    {COMMAND_OUT_LEFT, ACTION_MOVE, MOTION_OUT_LEFT},
    {COMMAND_OUT_RIGHT, ACTION_MOVE, MOTION_OUT_RIGHT},
    {COMMAND_SELECT_LEFT, ACTION_SELECT, MOTION_LEFT},
    {COMMAND_SELECT_RIGHT, ACTION_SELECT, MOTION_RIGHT},
    {COMMAND_SELECT_UP, ACTION_SELECT, MOTION_UP},
    {COMMAND_SELECT_DOWN, ACTION_SELECT, MOTION_DOWN},
    {COMMAND_SELECT_WORD_LEFT, ACTION_SELECT, MOTION_WORD_LEFT},
    {COMMAND_SELECT_WORD_RIGHT, ACTION_SELECT, MOTION_WORD_RIGHT},
    {COMMAND_SELECT_HOME, ACTION_SELECT, MOTION_HOME},
    {COMMAND_SELECT_END, ACTION_SELECT, MOTION_END},
    {COMMAND_SELECT_FORMULA_START, ACTION_SELECT, MOTION_FORMULA_START},
    {COMMAND_SELECT_FORMULA_END, ACTION_SELECT, MOTION_FORMULA_END},
};

MotionS motionOf(CommandE command) {
  for (MotionS const& motion : motions) {
    if (motion.command == command) return motion;
  }
  return {command, ACTION_OTHER, MOTION_LEFT};
}

bool isVertical(CommandE command) {
  MotionS const motion = motionOf(command);
  return motion.action != ACTION_OTHER && (motion.motion == MOTION_UP || motion.motion == MOTION_DOWN);
}

bool isSlotMotion(CaretMotionE motion) {
  return motion == MOTION_NEXT_SLOT || motion == MOTION_PREVIOUS_SLOT;
}

ScriptStepS stepOf(CommandE command) {
  switch (command) {
    case COMMAND_UNDO:
      return makeStep(SCRIPT_UNDO);
    case COMMAND_REDO:
      return makeStep(SCRIPT_REDO);
    case COMMAND_CUT:
      return makeStep(SCRIPT_CUT);
    case COMMAND_COPY:
      return makeStep(SCRIPT_COPY);
    case COMMAND_PASTE:
      return makeStep(SCRIPT_PASTE);
    default:
      return makeStep(SCRIPT_COMMAND, commands()[command].name);
  }
}

/// Whether all rows of a construct are empty.
bool isHollow(Node4C const& construct) {
  for (unsigned long i = 0; i < construct.numChildren(); ++i) {
    if (!isEmptyRow(*construct.child(i))) return false;
  }
  return true;
}

}  // namespace

bool FormulaFieldC::isEnabled(CommandE command) {
  if (commands()[command].modifies && !view_.isEditable()) return false;
  MotionS const motion = motionOf(command);
  if (motion.action != ACTION_OTHER) return isMotionEnabled(motion.motion, motion.action == ACTION_SELECT);

  Node4C const& formula = *view_.crefRoot().child(0);
  bool const selected = view_.isSelected();
  SelectionS const all = wholeRow(formula);
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
      return !isEmptyRow(formula);
    case COMMAND_UNDO:
      return view_.canUndo();
    case COMMAND_REDO:
      return view_.canRedo();
    case COMMAND_PASTE:
      return clipboard_->hasContent();
    default:
      return false;
  }
}

bool FormulaFieldC::run(CommandE command) {
  ClipboardContentS content;
  if (command == COMMAND_PASTE) {
    content = clipboard_->read();
    // What was not copied here is not there when a recording is played.
    if (recorded_ && acts_ == 0 && (content.bytes.empty() || content.bytes != copied_.bytes)) {
      return paste(content) != PASTE_REFUSED;
    }
  }
  bool const growth = command == COMMAND_GROW_SELECTION || command == COMMAND_SHRINK_SELECTION;
  ActC const act(*this, stepOf(command),
                 growth                ? ActC::KEEP_GROWTH
                 : isVertical(command) ? ActC::KEEP_COLUMN
                                       : ActC::KEEP_NOTHING);
  MotionS const motion = motionOf(command);
  if (motion.action != ACTION_OTHER) return runMotion(motion.motion, motion.action == ACTION_SELECT);
  switch (command) {
    case COMMAND_SELECT_ALL:
    case COMMAND_GROW_SELECTION:
    case COMMAND_SHRINK_SELECTION:
    case COMMAND_DROP_SELECTION:
      return runSelection(command);
    case COMMAND_COPY:
    case COMMAND_CUT:
      if (!isEnabled(command)) return false;
      copied_ = copy();
      clipboard_->write(copied_);
      return command == COMMAND_COPY || sendKey(KEY_BACKSPACE);
    case COMMAND_PASTE:
      return paste(content) != PASTE_REFUSED;
    default:
      return isEnabled(command) && runEdit(command);
  }
}

// ---- Motions and selections ----------------------------------------------------------------------------

bool FormulaFieldC::isMotionEnabled(CaretMotionE motion, bool selecting) {
  long column = column_;
  return (view_.isSelected() && !selecting && !isSlotMotion(motion)) ||
         findTarget(motion, view_, caret(), column);
}

bool FormulaFieldC::runMotion(CaretMotionE motion, bool selecting) {
  if (!isMotionEnabled(motion, selecting)) return false;
  completeName();
  bool const dropped = view_.isSelected() && !selecting;
  if (dropped && (motion == MOTION_LEFT || motion == MOTION_RIGHT)) {
    StretchS const stretch = selectedStretch(view_);
    return placeCaret(motion == MOTION_LEFT ? stretch.begin() : stretch.end());
  }
  PlaceS const target = findTarget(motion, view_, caret(), column_);
  if (target) return select({selecting ? anchor() : target, target});
  return dropped && !isSlotMotion(motion) && placeCaret(caret());
}

bool FormulaFieldC::runSelection(CommandE command) {
  if (!isEnabled(command)) return false;
  if (command != COMMAND_SHRINK_SELECTION) completeName();
  Node4C const& formula = *view_.crefRoot().child(0);
  switch (command) {
    case COMMAND_SELECT_ALL:
      return select({rowStart(formula), rowEnd(formula)});
    case COMMAND_GROW_SELECTION:
      grown_.push_back({anchor(), caret()});
      return select(growSelection(view_));
    case COMMAND_SHRINK_SELECTION: {
      SelectionS const before = grown_.back();
      grown_.pop_back();
      return select(before);
    }
    default:
      return placeCaret(caret());
  }
}

// ---- Edits ---------------------------------------------------------------------------------------------

bool FormulaFieldC::sendKey(unsigned long code) {
  return view_.addEvent(EVENT_KEY, code, false, false, false, 0, 0);
}

bool FormulaFieldC::runEdit(CommandE command) {
  wordTyped_ = false;
  switch (command) {
    case COMMAND_DELETE_LEFT:
      return deleteLeft();
    case COMMAND_DELETE_RIGHT:
      return deleteRight();
    case COMMAND_DELETE_WORD_LEFT:
      return deleteItem(MOTION_WORD_LEFT);
    case COMMAND_DELETE_WORD_RIGHT:
      return deleteItem(MOTION_WORD_RIGHT);
    case COMMAND_CLEAR:
      sendKey(KEY_CLEAR);
      return isEmptyRow(*view_.crefRoot().child(0));
    case COMMAND_UNDO:
    case COMMAND_REDO:
      return runHistory(command == COMMAND_REDO);
    default:
      return false;
  }
}

bool FormulaFieldC::runHistory(bool redo) {
  if (redo) {
    bool const done = view_.redo();
    while (done && view_.redoContinues() && view_.redo()) {
    }
    return done;
  }
  bool done = false;
  bool continues = true;
  while (continues) {
    continues = view_.undoContinues();
    if (!view_.undo()) break;
    done = true;
  }
  return done;
}

bool FormulaFieldC::deleteLeft() {
  if (view_.isSelected()) return sendKey(KEY_BACKSPACE);
  PlaceS const at = caret();
  Node4C const* const row = at.node->getParent();
  unsigned long const count = row->numChildren();
  if (at.pos > 0 && isContinuation(at.node->crefText()[at.pos - 1])) {
    long column = no_column;
    return deleteRange(findTarget(MOTION_LEFT, view_, at, column), at);
  }
  sendKey(KEY_BACKSPACE);
  bool const same = caret() == at && at.node->getParent() == row && row->numChildren() == count;
  // Where the view has nothing to delete without taking more than one thing away.
  return !same || runMotion(MOTION_OUT_LEFT, false);
}

bool FormulaFieldC::deleteRight() {
  PlaceS const at = caret();
  if (view_.isSelected()) return sendKey(KEY_DELETE);
  if (at.pos < at.node->sizeText()) {
    long column = no_column;
    PlaceS const end = findTarget(MOTION_RIGHT, view_, at, column);
    return end.pos == at.pos + 1 ? sendKey(KEY_DELETE) : deleteRange(at, end);
  }
  Node4C const* const right = at.node->goRight();
  if (right && isConstruct(*right)) {
    return isHollow(*right) ? deleteRange(at, placeAfter(*right)) : placeCaret(rowStart(*right->child(0)));
  }
  if (right)
    return isTypedOpen(*right) || isTypedClose(*right) ? sendKey(KEY_DELETE) : placeCaret(placeAfter(*right));
  Node4C const* const around = enclosingItem(at.node);
  if (!around) return false;
  if (isHollow(*around)) return deleteRange(placeBefore(*around), placeAfter(*around));
  Node4C const* const nextRow = at.node->getParent()->goRight();
  return placeCaret(nextRow ? rowStart(*nextRow) : placeAfter(*around));
}

bool FormulaFieldC::deleteItem(CaretMotionE motion) {
  bool const left = motion == MOTION_WORD_LEFT;
  PlaceS const at = caret();
  long column = no_column;
  PlaceS const target = findTarget(motion, view_, at, column);
  bool const inRow = target && target.node->getParent() == at.node->getParent();
  if (view_.isSelected() || !inRow) return left ? deleteLeft() : deleteRight();
  return deleteRange(target, at);
}

}  // namespace zolt::field
