#include "zolt/field/detail/act.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/selection_growth.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

ScriptStepS pointerStep(ScriptWordE word, long x, long y) {
  ScriptStepS step = makeStep(word);
  step.x = x;
  step.y = y;
  return step;
}

}  // namespace

bool FormulaFieldC::pressPointer(long x, long y, unsigned clicks, bool extend) {
  ScriptStepS step = pointerStep(SCRIPT_PEN_DOWN, x, y);
  step.clicks = clicks;
  step.shift = extend;
  ActC const act(*this, step);
  completeName();
  PlaceS const kept = anchor();
  if (!view_.addEvent(EVENT_PEN_DOWN, 0, false, false, false, x, y)) return false;
  if (extend) return select({kept, caret()});
  if (clicks < 2) return true;
  SelectionS selection = clicks == 2 ? selectConstructAt(view_, x, y) : selectRow(caret());
  if (clicks == 2 && !selection.caret) selection = selectItem(caret());
  if (clicks > 3) selection = view_.getWhole();
  return select(selection);
}

bool FormulaFieldC::movePointer(long x, long y) {
  ActC const act(*this, pointerStep(SCRIPT_PEN_MOVE, x, y));
  return view_.addEvent(EVENT_PEN_MOVE, 0, false, false, false, x, y);
}

bool FormulaFieldC::releasePointer() {
  ActC const act(*this, makeStep(SCRIPT_PEN_UP));
  return view_.addEvent(EVENT_PEN_UP, 0, false, false, false, 0, 0);
}

bool FormulaFieldC::moveSelection(PlaceS target) {
  if (!target || !view_.isSelected() || !view_.isEditable()) return false;
  ScriptStepS step = makeStep(SCRIPT_MOVE);
  if (recorded_) step.places = {pathOf(target)};
  ActC const act(*this, std::move(step));
  wordTyped_ = false;
  TableBlockS const block = findBlock(view_.getSelection());
  SelectionS const stretch = inOneRow(view_.getSelection());
  bool const forwards = !block && isBefore(stretch.caret, target);
  bool const isInside = block ? isIn(block, target) : !forwards && !isBefore(target, stretch.anchor);
  if (isInside) return false;
  bytestring content;
  view_.copy(content);
  SelectionPathS const source = pathOf(stretch);
  PlacePathS const targetPath = pathOf(target);
  GroupC group(*this);
  // The later place is changed first, so that the path to the earlier one stays valid.
  bool done = false;
  if (forwards) {
    done = placeCaret(target) && view_.paste(content);
    PlacePathS const begin = pathOf(placeAt(view_.crefRoot(), targetPath), COUNT_FROM_END);
    PlacePathS const end = pathOf(caret(), COUNT_FROM_END);
    restoreSelection(source);
    done = done && view_.isSelected() && sendKey(KEY_DELETE);
    PlaceS const place = placeAt(view_.crefRoot(), end, COUNT_FROM_END);
    if (done && place) {
      done = placeCaret(place) && separate(placeAt(view_.crefRoot(), begin, COUNT_FROM_END), place);
    }
  } else {
    done = sendKey(KEY_DELETE);
    done = done && placeCaret(placeAt(view_.crefRoot(), targetPath)) && view_.paste(content);
    done = done && (block || separate(placeAt(view_.crefRoot(), targetPath), caret()));
  }
  return group.end(done);
}

bool FormulaFieldC::setSelection(SelectionS selection) {
  if (!selection.anchor || !selection.caret) return false;
  ScriptStepS step = makeStep(SCRIPT_SELECT);
  if (recorded_) step.places = {pathOf(selection.anchor), pathOf(selection.caret)};
  ActC const act(*this, std::move(step));
  wordTyped_ = false;
  return select(selection);
}

}  // namespace zolt::field
