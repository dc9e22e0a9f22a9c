#include <algorithm>

#include "zolt/field/detail/act.h"
#include "zolt/field/detail/stretch.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/selection_growth.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

/// Whether `a` stands before `b` in reading order.
bool isBefore(PlaceS a, PlaceS b) {
  return a.node == b.node ? a.pos < b.pos : pathOf(*a.node) < pathOf(*b.node);
}

/// A place counted from the ends of rows and texts: survives edits before it.
struct FromEndS {
  PathT path;
  unsigned long pos = 0;
};

FromEndS countFromEnd(PlaceS place) {
  FromEndS counted;
  for (Node4C const* node = place.node; node->getParent(); node = node->getParent()) {
    counted.path.push_back(node->getParent()->numChildren() - 1 - node->findChildNumber());
  }
  std::reverse(counted.path.begin(), counted.path.end());
  counted.pos = place.node->sizeText() - place.pos;
  return counted;
}

PlaceS findFromEnd(Node4C const& root, FromEndS const& counted) {
  Node4C const* node = &root;
  for (unsigned long const step : counted.path) {
    if (step >= node->numChildren()) return {};
    node = node->child(node->numChildren() - 1 - step);
  }
  if (node->getType() != NODE4_TEXT || counted.pos > node->sizeText()) return {};
  return {node, static_cast<unsigned int>(node->sizeText() - counted.pos)};
}

}  // namespace

bool FormulaFieldC::pressPointer(long x, long y, unsigned clicks, bool extend) {
  ScriptStepS step = makeStep(SCRIPT_PEN_DOWN);
  step.x = x;
  step.y = y;
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

bool FormulaFieldC::moveSelection(PlaceS target) {
  if (!target || !view_.isSelected() || !view_.isEditable()) return false;
  ScriptStepS step = makeStep(SCRIPT_MOVE);
  if (recorded_) step.places = {toScriptPlace(target)};
  ActC const act(*this, std::move(step));
  wordTyped_ = false;
  StretchS const stretch = selectedStretch(view_);
  bool const forwards = isBefore(stretch.end(), target);
  if (!forwards && !isBefore(target, stretch.begin())) return false;
  bytestring content;
  view_.copy(content);
  SavedSelectionS places = saveSelection();
  places.anchorPath = pathOf(*stretch.begin().node);
  places.anchorPos = stretch.firstPos;
  places.caretPath = pathOf(*stretch.end().node);
  places.caretPos = stretch.lastPos;
  PathT const targetPath = pathOf(*target.node);
  GroupC group(*this);
  // The later place first: the path to the earlier one stays what it is.
  bool done = false;
  if (forwards) {
    done = placeCaret(target) && view_.paste(content);
    FromEndS const behind = countFromEnd(caret());
    restoreSelection(places);
    done = done && view_.isSelected() && sendKey(KEY_DELETE);
    PlaceS const place = findFromEnd(view_.crefRoot(), behind);
    if (done && place) placeCaret(place);
  } else {
    done = sendKey(KEY_DELETE);
    Node4C const* const node = nodeAt(view_.crefRoot(), targetPath);
    done = done && node && placeCaret({node, target.pos}) && view_.paste(content);
  }
  return group.end(done);
}

PlaceS FormulaFieldC::findPlace(ScriptPlaceS const& place) const {
  Node4C const* const node = nodeAt(view_.crefRoot(), place.path);
  if (!node || node->getType() != NODE4_TEXT || place.pos > node->sizeText()) return {};
  return {node, static_cast<unsigned int>(place.pos)};
}

bool FormulaFieldC::setSelection(SelectionS selection) {
  if (!selection.anchor || !selection.caret) return false;
  ScriptStepS step = makeStep(SCRIPT_SELECT);
  if (recorded_) step.places = {toScriptPlace(selection.anchor), toScriptPlace(selection.caret)};
  ActC const act(*this, std::move(step));
  wordTyped_ = false;
  return select(selection);
}

}  // namespace zolt::field
