#include "zolt/field/formula_field.h"

#include <algorithm>

#include "zolt/algexpr/cas_session.h"
#include "zolt/common/float64_util.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/decimal_comma_graphics.h"
#include "zolt/field/detail/formula_copy.h"
#include "zolt/field/detail/implied_signs.h"
#include "zolt/field/error_text.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/view/view_hold.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

namespace {

/// Takes a flag back at the end of a block, however it ends.
struct FlagResetS {
  bool& flag;
  ~FlagResetS() { flag = false; }
};

/// Whether the view's constraints, of which there are some, accept it. They are code of the host's.
bool isAccepted(ViewZNT4C const& view, PointerTC<AlgebraicExpressionC> const& expression) {
  ViewHoldC const hold(view);
  return view.getConstraints()->check(expression);
}

}  // namespace

// Places are kept by their paths, since undo brings an earlier formula back in other nodes.
struct FormulaFieldC::DiagnosedS {
  /// Everything that a diagnosis depends on.
  struct QuestionS {
    NodeRecordPointerC formula;
    PointerTC<math::algexpr::CASSessionBC> session;
    PointerTC<math::algexpr::ConstraintsBC> constraints;
    SelectionPathS completed;  // the name that was just typed
    bool impliedProducts = false;
    bool impliedBrackets = false;

    bool operator==(QuestionS const& other) const {
      return formula.get() == other.formula.get() && session == other.session &&
             constraints == other.constraints && completed == other.completed &&
             impliedProducts == other.impliedProducts && impliedBrackets == other.impliedBrackets;
    }
  };

  QuestionS question;
  PointerTC<AlgebraicExpressionC> expression;
  ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
  SelectionPathS range;
  bool judging = false;  // the constraints are being asked
};

FormulaFieldC::FormulaFieldC(PointerTC<GraphicsABC> surface)
    : surface_(new DecimalCommaGraphicsC(std::move(surface))),
      view_(surface_, options_),
      clipboard_(new MemoryClipboardC),
      seen_(view_.crefRoot().makeRecord()),
      diagnosed_(std::make_unique<DiagnosedS>()) {}

FormulaFieldC::~FormulaFieldC() {
#ifdef ZOLT_CHECK_TREES
  if (acts_ > 0) __builtin_trap();
#endif
}

void FormulaFieldC::setOptions(InputOptionsS const& options) {
  recordOptions(options_, options);
  if (options.decimalComma != options_.decimalComma) {
    surface_->showCommas(options.decimalComma);
    view_.measureAgain();  // the decimal signs differ in width
  }
  options_ = options;
}

void FormulaFieldC::setEditable(bool editable) {
  ActC const act(*this, makeStep(editable ? SCRIPT_UNLOCK : SCRIPT_LOCK));
  view_.setEditable(editable);
}

void FormulaFieldC::record(EventScriptT* script) {
  recorded_ = script;
  copied_ = ClipboardContentS();
  recordOptions(InputOptionsS(), options_);
  if (recorded_ && !isEditable()) recorded_->push_back(makeStep(SCRIPT_LOCK));
}

void FormulaFieldC::recordOptions(InputOptionsS const& from, InputOptionsS const& to) {
  if (!recorded_) return;
  for (auto const& change : listChanges(from, to)) {
    recorded_->push_back(makeStep(SCRIPT_SET, change.first));
    recorded_->back().on = change.second;
  }
  if (from.names == to.names) return;
  wstring names;
  for (wstring const& name : to.names) names += (names.empty() ? u"" : u" ") + name;
  recorded_->push_back(makeStep(SCRIPT_NAMES, names));
}

// ---- Expression ----------------------------------------------------------------------------------------

bool FormulaFieldC::setExpression(PointerTC<AlgebraicExpressionC> expression, unsigned long precision,
                                  math::algexpr::NumberDisplayFormatE format) {
  // The constraints that are being asked are not asked again.
  if (view_.isBusy()) return false;
  if (expression && getConstraints()) {
    // The number of digits shown may change it.
    std::unique_ptr<Node4C> const shown(Node4C::fromAlgebraicExpression(expression, precision, format));
    auto const judged = shown->getAlgebraicExpression(nullptr);
    if (judged && !isAccepted(view_, judged)) return false;
  }
  bool const written = recorded_ && expression;
  ScriptStepS step = makeStep(SCRIPT_SHOW, written ? expression->toPrefixString() : wstring());
  step.code = std::min(precision, math::common::Float64UtilC::max_display_precision);
  step.format = format;
  ActC const act(*this, std::move(step));
  wordTyped_ = false;
  view_.setAlgebraicExpression(std::move(expression), getConstraints(), precision, format);
  return true;
}

void FormulaFieldC::clear() {
  auto const [start, end] = view_.getWhole();
  if (start != end && !run(COMMAND_CLEAR)) setExpression(nullptr);
}

bool FormulaFieldC::setPlainText(wstring const& text, ReadErrorS* error) {
  auto expression = exchange::fromPlainText(text, math::algexpr::CASSessionBC::getSession(), error);
  if (!expression) return false;
  if (setExpression(expression)) return true;
  using namespace math::common;
  if (error) *error = {READ_ERROR_NOT_ALLOWED, 0, 0, explainRefusal(*expression)};
  return false;
}

void FormulaFieldC::setConstraints(PointerTC<math::algexpr::ConstraintsBC> constraints) {
  view_.setConstraints(std::move(constraints));
}

wstring FormulaFieldC::explainRefusal(AlgebraicExpressionC const& expression) const {
  bool const mayAsk = getConstraints() && !view_.isBusy();
  ViewHoldC const hold(view_);
  wstring reason = mayAsk ? getConstraints()->explain(expression) : wstring();
  return reason.empty() ? math::common::describe(math::common::READ_ERROR_NOT_ALLOWED) : reason;
}

FormulaDiagnosisS FormulaFieldC::diagnose() const {
  Node4C const& root = view_.crefRoot();
  ReplacementS const completion = diagnosed_->judging ? ReplacementS() : findCompletion();
  DiagnosedS::QuestionS question{
      root.makeRecord(),        math::algexpr::CASSessionBC::getSession(),
      getConstraints(),         pathOf(SelectionS{completion.begin, completion.end}),
      options_.impliedProducts, options_.impliedBrackets};
  if (!(question == diagnosed_->question)) {
    DiagnosisS found = diagnoseTyped(root, view_.crefOperatorList(), options_, completion);
    if (completion.begin && found.expression && getConstraints()) {
      // A name stays as it was typed when the constraints reject its letter.
      diagnosed_->judging = true;
      FlagResetS const reset{diagnosed_->judging};
      if (!isAccepted(view_, found.expression)) {
        found = diagnoseTyped(root, view_.crefOperatorList(), options_);
      }
    }
    *diagnosed_ = {std::move(question), std::move(found.expression), found.cause, pathOf(found.range)};
  }
  FormulaDiagnosisS diagnosis;
  diagnosis.expression = diagnosed_->expression;
  if (diagnosis.expression) return diagnosis;
  diagnosis.error.cause = toReadError(diagnosed_->cause);
  diagnosis.error.message = describe(diagnosed_->cause);
  SelectionS& range = diagnosis.error.range;
  range = selectionAt(root, diagnosed_->range);
  if (!range.anchor || !range.caret) range = {anchor(), caret()};
  diagnosis.error.box = view_.getRectangle(range);
  return diagnosis;
}

PointerTC<AlgebraicExpressionC> FormulaFieldC::getExpression(FormulaErrorS* error) {
  completeName();
  FormulaDiagnosisS found = diagnose();
  if (found.expression || !error) return found.expression;
  {
    ActC const act(*this, makeStep(SCRIPT_ASK));
    select(found.error.range);
  }
  marked_ = view_.isSelected();
  *error = std::move(found.error);
  return nullptr;
}

bool FormulaFieldC::selectPart(unsigned long number) {
  std::vector<SelectionS> parts;
  ReplacementS const completion = findCompletion();
  static_cast<void>(diagnoseTyped(view_.crefRoot(), view_.crefOperatorList(), options_, completion, &parts));
  return number < parts.size() && setSelection(parts[number]);
}

wstring FormulaFieldC::writeNotation() const {
  return writeTreeNotation(view_.crefRoot(), view_.getSelection());
}

wstring FormulaFieldC::writeTree() const {
  ReplacementS const completion = findCompletion();
  if (!completion.begin) return writeTreeNotation(view_.crefRoot());
  return writeTreeNotation(FormulaCopyC(view_.crefRoot(), view_.crefOperatorList(), completion).refRoot());
}

bool FormulaFieldC::setNotation(wstring const& notation) {
  ActC const act(*this, makeStep(SCRIPT_TREE, notation));
  wordTyped_ = false;
  if (!isEditable()) return false;
  TreeNotationS tree;
  unsigned long position = 0;
  if (!readTreeNotation(notation, view_.crefOperatorList(), tree, position)) return false;
  GroupC group(*this);
  select(view_.getWhole());
  if (!group.end(view_.paste(writeBytes(*tree.root->child(0))))) return false;
  SelectionS& places = tree.selection;
  if (!places.anchor) places.anchor = places.caret;
  restoreSelection(pathOf(places));
  return true;
}

// ---- Selection and groups ------------------------------------------------------------------------------

PlaceS FormulaFieldC::anchor() const {
  auto const [anchor, caret] = view_.getSelection();
  return anchor ? anchor : caret;
}

bool FormulaFieldC::deleteRange(PlaceS begin, PlaceS end) {
  if (begin == end) return placeCaret(begin);
  GroupC group(*this);  // so that undo restores the caret and not this selection
  return group.end(select({begin, end}) && sendKey(KEY_DELETE));
}

void FormulaFieldC::restoreSelection(SelectionPathS const& saved) {
  SelectionS const selection = selectionAt(view_.crefRoot(), saved);
  if (selection.anchor) select(selection);
}

// ---- For painting --------------------------------------------------------------------------------------

RectangleS FormulaFieldC::getCaretRectangle() const {
  unsigned long const caret = view_.crefComposition().caret;
  return view_.getComposedRectangle(caret, caret);
}

RectangleS FormulaFieldC::getComposedRectangle(unsigned long begin, unsigned long end) const {
  return view_.getComposedRectangle(begin, end);
}

std::vector<RectangleS> FormulaFieldC::getSelectionRectangles() const {
  std::vector<RectangleS> bands;
  if (!view_.isSelected()) return bands;
  view_.getExpressionSize();  // lays out
  if (findBlock(view_.getSelection())) return {view_.getRectangle(view_.getSelection())};
  auto const [begin, end] = inOneRow(view_.getSelection());
  PointS const at = begin.node->getParent()->getAbsolutePosition();
  ViewHoldC const hold(view_);
  Node4C const* item = nullptr;
  do {
    item = item ? item->goRight() : begin.node;
    RectangleS band{at.x + item->getDX(), at.y + item->getDY(), at.x + item->getDX() + item->getWidth(),
                    at.y + item->getDY() + item->getHeight()};
    if (item == end.node) band.right = band.left + view_.measureStart(end);
    if (item == begin.node) band.left += view_.measureStart(begin);
    if (band.right <= band.left) continue;
    if (!bands.empty()) bands.back().right = band.left;  // no gaps between bands
    if (!bands.empty() && bands.back().top == band.top && bands.back().bottom == band.bottom) {
      bands.back().right = band.right;
    } else {
      bands.push_back(band);
    }
  } while (item != end.node);
  return bands;
}

bool FormulaFieldC::takeRevealRequest(RectangleS& box) {
  if (!reveal_) return false;
  reveal_ = false;
  box = getCaretRectangle();
  return true;
}

bool FormulaFieldC::takeChange() {
  NodeRecordPointerC const now = view_.crefRoot().makeRecord();
  if (now.get() == seen_.get()) return false;
  bool const changed = compareStates(*seen_, *now).differs;
  seen_ = now;
  return changed;
}

}  // namespace zolt::field
