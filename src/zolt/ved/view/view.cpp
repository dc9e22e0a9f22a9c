#include <utility>

#include "zolt/algexpr/cas_session.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/validate_tree.h"
#include "zolt/ved/view/detail/event_guard.h"
#include "zolt/ved/view/view.h"
#include "zolt/ved/view/view_hold.h"

namespace zolt::math::ved {

namespace {

algexpr::CASEngineABC const& engineOf(PointerTC<algexpr::AlgebraicExpressionC> const& expression) {
  return expression ? expression->getCASEngine() : algexpr::CASSessionBC::getSession()->getEngine();
}

}  // namespace

ViewZNT4C::ViewZNT4C(PointerTC<GraphicsABC> graphics) : graphics_(std::move(graphics)) {
  setAlgebraicExpression(nullptr, nullptr, 0, algexpr::NUMBER_FORMAT_AUTOMATIC);
}

ViewZNT4C::~ViewZNT4C() {
#ifdef ZOLT_CHECK_TREES
  if (notifying_ || held_ || (event_ && !event_->mayLoseView())) __builtin_trap();
#endif
  if (event_) event_->loseView();
  root_.reset();
  expression_.reset();
  constraints_.reset();
  operatorList_.reset();
}

// ---- Expression -----------------------------------------------------------------------------------------

void ViewZNT4C::setAlgebraicExpression(PointerTC<algexpr::AlgebraicExpressionC> expression,
                                       PointerTC<algexpr::ConstraintsBC> constraints, unsigned long precision,
                                       algexpr::NumberDisplayFormatE format) {
  if (isBusy()) return;
  std::unique_ptr<Node4C> root(Node4C::fromAlgebraicExpression(expression, precision, format));
  auto history = std::make_unique<EditHistoryC>();
  if (history_) history->countFrom(*history_);
  if (grouping_) history->beginStep(*root, wholeRow(*root->child(0)));
  auto operators = OperatorListRepositoryC::lookup(engineOf(expression));
  // Nothing fails from here on. The repaint comes last, since a surface may read the view when it is asked.
  history_ = std::move(history);
  takeBackDue_ = false;
  operatorList_ = std::move(operators);
  constraints_ = std::move(constraints);
  expression_ = std::move(expression);
  putUp(std::move(root));
}

void ViewZNT4C::putUp(std::unique_ptr<Node4C> root) {
  composition_ = {};
  root_ = std::move(root);
  selection_ = wholeRow(*root_->child(0));
  needLayout();
}

bool ViewZNT4C::setConstraints(PointerTC<algexpr::ConstraintsBC> constraints) {
  if (isBusy()) return false;
  constraints_ = std::move(constraints);
  return true;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::getAlgebraicExpression(ErrorCauseE* cause) {
  if (!editable_ && expression_) return expression_;
  DiagnosisS const found = diagnose();
  if (!found.expression && editable_ && !isBusy() && cause) {
    if (found.range.anchor) selection_.anchor = found.range.anchor;
    if (found.range.caret) selection_.caret = found.range.caret;
    *cause = found.cause;
    needRedraw();
  }
  return found.expression;
}

bool ViewZNT4C::setEditable(bool editable) {
  editable_ = editable;
  return true;
}

bool ViewZNT4C::selectRange(SelectionS const& range) {
  if (isBusy()) return false;
  takeBackIfDue();
  if (validateSelection(*root_, range).invariant != TREE_VALID) return false;
  selection_ = range;
  if (range.anchor == range.caret) selection_.anchor = {};
  return needRedraw();
}

// ---- Size and drawing -----------------------------------------------------------------------------------

void ViewZNT4C::layoutIfPending() const {
  takeBackIfDue();
  if (!layoutPending_ || held_) return;
  ViewHoldC const hold(*this);
  if (measurePending_) {
    root_->layout(*graphics_, composed());
  } else {
    root_->layoutChanged(*graphics_, composed());
  }
  layoutPending_ = measurePending_ = false;
}

PointS ViewZNT4C::getExpressionSize() const {
  if (!event_) layoutIfPending();
  return {root_->getWidth(), root_->getHeight()};
}

double ViewZNT4C::getBaseline() const {
  if (!event_) layoutIfPending();
  ViewHoldC const hold(*this);
  graphics_->selectFont(0);
  long const aboveText = root_->getMidHeight() - graphics_->getTextMidHeight(u"0");
  return static_cast<double>(aboveText) + graphics_->getTextBaseline();
}

void ViewZNT4C::display(long x, long y) const {
  // A surface that paints from inside `invalidate` would read a tree in the middle of a change.
  if (event_) {
    paintMissed_ = true;
    return;
  }
  if (held_) return;
  layoutIfPending();
  ViewHoldC const hold(*this);
  root_->display(*graphics_, x, y, selection_.caret.node, composed());
}

bool ViewZNT4C::needLayout() {
  if (held_) return bip();
  layoutPending_ = true;
  return needRedraw();
}

bool ViewZNT4C::measureAgain() {
  if (held_) return bip();
  measurePending_ = true;
  return needLayout();
}

bool ViewZNT4C::needRedraw() {
  bool const notifying = std::exchange(notifying_, true);
  graphics_->invalidate();
  notifying_ = notifying;
  return true;
}

// ---- Events ---------------------------------------------------------------------------------------------

bool ViewZNT4C::addEvent(EventE event, unsigned long code, bool shift, bool /*control*/, bool /*alt*/, long x,
                         long y) {
  if (isBusy()) return false;
  EventC guard(*this);
  bool const consumed = dispatchEvent(event, code, shift, x, y);
  if (consumed) finishEdit();
  guard.finish();
  return consumed;
}

ViewZNT4C::EventC::EventC(ViewZNT4C& view) : view_(view) {
  view_.takeBackIfDue();
  view_.endComposition();
  view_.event_ = this;
  selection_ = view_.selection_;
  penDown_ = view_.penDown_;
}

ViewZNT4C::EventC::~EventC() {
  if (finished_) return;
  view_.event_ = nullptr;
  view_.paintMissed_ = false;
  view_.penDown_ = penDown_;
  view_.takeBackDue_ = view_.history_->isStepOpen();
  if (view_.takeBackDue_) return;
  view_.selection_ = selection_;
}

void ViewZNT4C::EventC::finish() {
  if (finished_) return;
  finished_ = true;
  view_.event_ = nullptr;
  if (!view_.paintMissed_) return;
  view_.paintMissed_ = false;
  view_.needRedraw();
}

bool ViewZNT4C::dispatchEvent(EventE event, unsigned long code, bool shift, long x, long y) {
  switch (event) {
    case EVENT_CHAR:
      doAddText(wstring(1, static_cast<char16_t>(code & 0xFFFF)));
      return true;
    case EVENT_KEY:
      return dispatchKey(code, shift);
    case EVENT_PEN_DOWN:
      penDown_ = true;
      selection_.anchor = selection_.caret = findPlace(x, y);
      return needRedraw();
    case EVENT_PEN_UP: {
      bool const wasDown = penDown_;
      penDown_ = false;
      return wasDown;
    }
    case EVENT_PEN_MOVE: {
      if (!penDown_) return false;
      if (PlaceS const place = findPlace(x, y); place != selection_.caret) {
        selection_.caret = place;
        needRedraw();
      }
      return true;
    }
  }
  return false;
}

bool ViewZNT4C::dispatchKey(unsigned long code, bool shift) {
  if (auto const op = operatorList_->lookupKey(code)) {
    doRunOperator(op);
    return true;
  }
  switch (code) {
    case KEY_BACKSPACE:
      doBackspace();
      return true;
    case KEY_CLEAR:
      doClear();
      return true;
    case KEY_DELETE:
      doDelete();
      return true;
    case KEY_LEFT:
      return runCaretKey(STEP_LEFT, shift);
    case KEY_RIGHT:
      return runCaretKey(STEP_RIGHT, shift);
    case KEY_THETA:
      doAddText(u"\u03B8");
      return true;
    case KEY_CAPITAL_E:
      doAddText(u"E");
      return true;
    default:  // The host moves the caret up and down, since it knows the geometry that a person sees.
      return false;
  }
}

bool ViewZNT4C::finishEdit() {
  if (history_->isStepOpen()) {
    if (layoutPending_) root_->checkTree(selection_);
  } else if (layoutPending_) {
    // No step is open, so the tree must not change: it is normalised already, and only the places may have to
    // move.
    Node4C::stepInside(selection_.caret);
    Node4C::stepInside(selection_.anchor);
  }
#ifdef ZOLT_CHECK_TREES
  bool const sound = validateTree(*root_).invariant == TREE_VALID &&
                     validateSelection(*root_, selection_).invariant == TREE_VALID;
  if (!sound) __builtin_trap();
#endif
  return grouping_ || settleEdit();
}

bool ViewZNT4C::settleEdit() {
  EventC& event = *event_;
  event.letViewGo();
  wstring why;
  bool const rejected = isRejected(why);
  if (event.hasLostView()) return false;
  if (rejected) {
    rejection_ = std::move(why);
    takeOver(*history_->stateBeforeStep());
    needRedraw();
    history_->dropStep();
  } else {
    history_->endStep(*root_, selection_);
  }
  return !rejected;
}

bool ViewZNT4C::isRejected(wstring& why) const {
  if (!constraints_ || !history_->isStepOpen() || !history_->hasChanged(*root_)) return false;
  auto const expression = getJudgedExpression();
  PointerTC<algexpr::ConstraintsBC> const asked = constraints_;  // which may destroy the view
  if (!expression || asked->check(expression)) return false;
  why = asked->explain(*expression);
  return true;
}

PointerTC<algexpr::AlgebraicExpressionC> ViewZNT4C::getJudgedExpression() const {
  return root_->getAlgebraicExpression(nullptr);
}

}  // namespace zolt::math::ved
