#include "zolt/field/detail/act.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/selection_growth.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

bool FormulaFieldC::pressPointer(long x, long y, unsigned clicks, bool extend) {
  ScriptStepS step = makeStep(SCRIPT_PEN_DOWN);
  step.x = x;
  step.y = y;
  step.clicks = clicks;
  step.shift = extend;
  ActC const act(*this, step);
  completeWord();
  PlaceS const kept = anchor();
  if (!view_.addEvent(EVENT_PEN_DOWN, 0, false, false, false, x, y)) return false;
  if (extend) return select({kept, caret()});
  if (clicks < 2) return true;
  SelectionS selection = clicks == 2 ? selectConstructAt(view_, x, y) : selectRow(caret());
  if (clicks == 2 && !selection.caret) selection = selectItem(caret());
  if (clicks > 3) selection = selectRow(rowStart(*view_.crefRoot().child(0)));
  return select(selection);
}

bool FormulaFieldC::movePointer(long x, long y) {
  ScriptStepS step = makeStep(SCRIPT_PEN_MOVE);
  step.x = x;
  step.y = y;
  ActC const act(*this, step);
  return view_.addEvent(EVENT_PEN_MOVE, 0, false, false, false, x, y);
}

bool FormulaFieldC::releasePointer() {
  ActC const act(*this, makeStep(SCRIPT_PEN_UP));
  return view_.addEvent(EVENT_PEN_UP, 0, false, false, false, 0, 0);
}

}  // namespace zolt::field
