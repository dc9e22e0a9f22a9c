#include <algorithm>
#include <utility>

#include "zolt/algexpr/cas_session.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/input_places.h"
#include "zolt/field/detail/operand_ends.h"
#include "zolt/field/detail/typed_bounds.h"
#include "zolt/field/detail/typed_calculus.h"
#include "zolt/field/detail/typed_products.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/field/error_text.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator_table_template.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::field {

using namespace detail;
using namespace math::common;
using namespace math::ved;

namespace {

/// What a key does without and with Shift.
struct KeyCommandS {
  unsigned long code;
  CommandE plain, shifted;
};

constexpr KeyCommandS key_commands[] = {{KEY_BACKSPACE, COMMAND_DELETE_LEFT, COMMAND_DELETE_LEFT},
                                        {KEY_CLEAR, COMMAND_CLEAR, COMMAND_CLEAR},
                                        {KEY_DELETE, COMMAND_DELETE_RIGHT, COMMAND_DELETE_RIGHT},
                                        {KEY_LEFT, COMMAND_LEFT, COMMAND_SELECT_LEFT},
                                        {KEY_UP, COMMAND_UP, COMMAND_SELECT_UP},
                                        {KEY_RIGHT, COMMAND_RIGHT, COMMAND_SELECT_RIGHT},
                                        {KEY_DOWN, COMMAND_DOWN, COMMAND_SELECT_DOWN}};

/// The exponent just before the place when another raised character can join it, as in "x¹⁰".
Node4C const* findGrowingExponent(PlaceS place) {
  Node4C const* const left = place.pos == 0 ? place.node->goLeft() : nullptr;
  if (!left || left->getType() != NODE4_POWER) return nullptr;
  auto const [start, end] = wholeRow(*left->child(0));
  if (start.node != end.node) return nullptr;
  for (char16_t const c : start.node->crefText()) {
    if (!math::common::isDigit(c) && !math::common::isMinus(c)) return nullptr;
  }
  return left;
}

bool isRadical(char16_t c) { return c == u'√' || c == u'∛' || c == u'∜'; }
bool isWord(wstring const& text) { return !text.empty() && isWordCharacter(text[0]); }

/// Whether what is inserted by that name applies to a base: "^", "°", "!".
bool raisesBase(wstring const& name, OperatorListC const& operators) {
  if (name == u"^" || name == u"_deg" || name == u"_rad") return true;
  auto const op = operators.lookup(name);
  return bool{operators.lookupText(op ? op->getText() : name, OPERATOR_AFTER)};
}

/// Whether the operator is a name, alone or before what it applies to.
bool beginsWithName(OperatorBC const& op) {
  wstring const text = op.getText();
  bool const letters = isWord(text) && text[0] != u'_' && text[0] != math::common::pi_sign;
  return letters && !op.isConstruct() && (!op.isLinear() || op.getArity() == 1);
}

}  // namespace

bool FormulaFieldC::typeCharacter(char16_t c) {
  ScriptStepS recorded = makeStep(SCRIPT_CHAR);
  recorded.code = c;
  LastInputS const last = std::exchange(last_, {});
  auto bounds = std::exchange(bounds_, {}), bars = std::exchange(bars_, {});
  ActC act(*this, recorded, ActC::KEEP_COMPLETION);
  if (!view_.isEditable()) return false;
  bounds_ = std::move(bounds);
  bars_ = std::move(bars);
  act.dropMark();
  if (last.separated && c == u';' && endTableRow(last)) return true;
  if (last.ended == c && c == u'(') return true;
  if (auto const taken = typeInCompletion(c)) return *taken;
  if (last.ungrouped && bindsToGroup(c, view_.crefOperatorList()) && !regroup()) return false;
  if (!bars_.empty()) separateByBar(c);
  bool const movedOut = wordTyped_ && !isWordCharacter(c) && moveWordOut();
  BoundsStepS step;
  InputDecisionS decision = decide(c, step);
  if (movedOut || (wordTyped_ && (decision.target || decision.kind != INPUT_TEXT))) {
    // The name must be found before the caret leaves it.
    if (!movedOut) completeName();
    bool const hasSpace = c == u' ' && endsSignBetween(caret(), view_.crefOperatorList());
    decision = hasSpace ? InputDecisionS{INPUT_MOVE, {}, caret(), {}} : decide(c, step);
  }
  if (wordTyped_ && options_.singleLetters && decision.text == u"(") {
    ReplacementS const found =
        findNameReplacement(view_.crefOperatorList(), caret(), nameOptions(), NAME_IS_CALLED);
    if (found.begin) replaceText(found);
  }
  last_.selectionBefore = saveSelection();
  last_.historyBefore = view_.getHistoryPosition();
  bool const taken = actOn(decision);
  last_.separated = taken && options_.decimalComma && c == u';';
  if (taken) {
    if (step.target) bounds_.back().close = step.close;
    replaceCompleted(decision, c);
    if (decision.kind == INPUT_MOVE && (c == u'_' || c == u'^') && !step.target)
      bounds_.push_back({enclosingItem(*caret().node), u'\0', false});
    bool const opensBound = decision.text == u"(" && c == u'{' && !bounds_.empty();
    if (opensBound && !bounds_.back().isDerivative) bounds_.back().close = u'}';
    if (decision.kind == INPUT_MOVE && last.ended == c) mergeDoubled(c);
    if (decision.kind == INPUT_MOVE && c == u'}') closeGroup();
    if (decision.text == u")" && c == u'}') closeIndex();
    if (decision.kind == INPUT_MOVE) last_.ended = c;
  } else {
    act.restoreMark();
    refuse(wstring(1, c), {findCause(c), 0, 1, {}});
  }
  bool const inWord = taken && decision.kind == INPUT_TEXT && isWord(decision.text);
  wordTyped_ = inWord && (wordTyped_ || !math::common::isDigit(decision.text[0]));
  if (decision.kind == INPUT_OPERATOR && !decision.target) adoptVariant(bounds_, caret());
  // "√(x+1)" is what "sqrt(x+1)" is: the bracket is the root's.
  if (taken && isRadical(c) && isEmptyRow(*caret().node->getParent())) last_.ended = u'(';
  if (decision.kind == INPUT_OPERATOR && c == u'|') bars_.push_back({enclosingItem(*caret().node), c, false});
  keepAround(bounds_, caret());
  keepAround(bars_, caret());
  refreshNames();
  return taken;
}

bool FormulaFieldC::insertText(wstring const& text) {
  ActC act(*this, makeStep(SCRIPT_INSERT, text), ActC::KEEP_COMPLETION);
  if (text.size() == 1) return typeCharacter(text[0]);
  bool const completing = completion_.isOpen();
  bool taken = isEditable() && !text.empty();
  if (taken) act.dropMark();
  GroupC group(*this);
  if (text.size() > limits::max_typed_text) {
    leaveCompletion();
    completeName();
    wordTyped_ = false;
    wstring signs = text;
    for (char16_t& c : signs) c = foldTyped(c, options_);
    if (group.end(view_.insertText(signs))) return true;
    act.restoreMark();
    auto const bad = std::find_if(signs.begin(), signs.end(),
                                  [&](char16_t c) { return findCause(c) == READ_ERROR_BAD_CHARACTER; });
    bool const isBad = bad != signs.end();
    auto const at = static_cast<unsigned long>(isBad ? bad - signs.begin() : 0);
    return refuse(text, {isBad ? READ_ERROR_BAD_CHARACTER : findCause(u'x'), at, at + 1, {}});
  }
  std::size_t i = 0;
  for (; taken && i < text.size(); ++i) taken = typeCharacter(text[i]);
  bool const kept = group.end(taken);
  if (!kept && !completing) completion_.close();
  showComposed();
  if (kept) return true;
  act.restoreMark();
  if (taken || i == 0) return refuse(text, {findCause(u'x'), 0, 0, {}});
  auto const at = static_cast<unsigned long>(i - 1);
  return refuse(text, {refusal_.cause, at, at + 1, {}});
}

bool FormulaFieldC::insertOperator(wstring const& name) {
  ActC act(*this, makeStep(SCRIPT_OPERATOR, name));
  if (!view_.isEditable()) return false;
  bool const isKnown{view_.crefOperatorList().lookup(name)};
  auto const sized = isKnown ? nullptr : OperatorTableTemplateC::read(name);
  if (!isKnown && !sized) return false;
  act.dropMark();
  GroupC group(*this);
  completeName();
  if (group.end(sized ? view_.insertOperator(sized) : runOperator(name))) return true;
  act.restoreMark();
  return refuse({}, {findCause(u'x'), 0, 0, {}});
}

ReadErrorE FormulaFieldC::findCause(char16_t typed) const {
  wstring const c(1, foldTyped(typed, options_));
  bool const isKnown = Node4C::isTypable(c[0]) || view_.crefOperatorList().lookup(c);
  if (!isKnown) return READ_ERROR_BAD_CHARACTER;
  return getConstraints() ? READ_ERROR_NOT_ALLOWED : READ_ERROR_MISPLACED;
}

/// Keeps for the host why a part of `text` was refused. Answers false.
bool FormulaFieldC::refuse(wstring const& text, ReadErrorS error) {
  if (!isEditable()) return false;
  bool const isBad = error.cause == READ_ERROR_BAD_CHARACTER;
  refusal_.character = isBad ? text.substr(error.begin, error.end - error.begin) : wstring();
  wstring reason = view_.takeRejection();
  bool const isExplained = error.cause == READ_ERROR_NOT_ALLOWED && !reason.empty();
  error.message = isExplained ? std::move(reason) : describeRefusal(error, text);
  static_cast<ReadErrorS&>(refusal_) = std::move(error);
  return false;
}

bool FormulaFieldC::takeRefusal(RefusalS& refusal) {
  if (refusal_.cause == READ_ERROR_NONE) return false;
  refusal = std::exchange(refusal_, {});
  refusal.range = {anchor(), caret()};
  refusal.box = view_.getRectangle(refusal.range);
  return true;
}

// "a" followed by the function "sin" must not become "asin".
bool FormulaFieldC::runOperator(wstring const& name) {
  auto const op = view_.crefOperatorList().lookup(name);
  if (!op) return false;
  if (view_.isSelected() && options_.exponents && raisesBase(name, view_.crefOperatorList())) {
    return name == u"^" ? typeExponent({INPUT_OPEN_EXPONENT, {}, {}, {}})
                        : raiseSelection({INPUT_OPERATOR, name, {}, {}});
  }
  if ((name == u"_deg" || name == u"_rad") && beginsExponent(caret()))
    return view_.insertText(name == u"_deg" ? u"o" : u"r");
  SelectionS const stretch = inOneRow(view_.getSelection());
  if (name == u"/") return insertFraction();
  if (!beginsWithName(*op) || !endsNameAt(stretch.anchor)) return view_.insertText(name);
  SelectionPathS places = pathOf(stretch);
  ++places.anchor.pos;
  if (stretch.anchor.node == stretch.caret.node) ++places.caret.pos;
  GroupC group(*this);
  bool const done = placeCaret(stretch.anchor) && view_.insertText(u" ");
  restoreSelection(places);
  return group.end(done && view_.insertText(name));
}

bool FormulaFieldC::pressKey(unsigned long code, bool shift) {
  ScriptStepS step = makeStep(SCRIPT_KEY);
  step.code = code;
  step.shift = shift;
  bool const vertical = code == KEY_UP || code == KEY_DOWN;
  auto const op = view_.crefOperatorList().lookupKey(code);
  bool const keepsColumn = vertical && !completion_.isOpen();
  ActC const act(*this, step,
                 op            ? ActC::KEEP_NOTHING
                 : keepsColumn ? ActC::KEEP_COLUMN
                               : ActC::KEEP_COMPLETION);
  if (op) {
    GroupC group(*this);
    completeName();
    bool const raises = view_.isSelected() && raisesBase(op->getName(), view_.crefOperatorList());
    return group.end(raises ? runOperator(op->getName()) : view_.insertOperator(op));
  }
  for (KeyCommandS const& key : key_commands) {
    if (key.code == code) return run(shift ? key.shifted : key.plain);
  }
  leaveCompletion();
  return view_.addEvent(EVENT_KEY, code, shift, false, false, 0, 0);
}

bool FormulaFieldC::actOn(InputDecisionS const& decision) {
  switch (decision.kind) {
    case INPUT_MOVE:
      return placeCaret(decision.target);
    case INPUT_OPERATOR:
    case INPUT_TEXT: {
      bool const raises = raisesBase(decision.text, view_.crefOperatorList());
      if (raises && view_.isSelected() && options_.exponents) return raiseSelection(decision);
      bool const raisesPower = raises && findPower();
      return decision.target || decision.begin || raisesPower ? actByRule(decision) : insert(decision);
    }
    case INPUT_EXPONENT:
    case INPUT_OPEN_EXPONENT:
      return typeExponent(decision);
    case INPUT_CALL:
      return replaceCall(makeCall(view_, decision.text));
    case INPUT_RECOUNT:
      return replaceCall(findRecountedConstruct(view_, decision.text[0]));
    case INPUT_BRACKETS:
      return bracketSelection();
  }
  return false;
}

/// Types what a rule moves or brackets an operand for. One undo takes only the rule back.
bool FormulaFieldC::actByRule(InputDecisionS const& decision) {
  PlacePathS const target = decision.target ? pathOf(decision.target) : PlacePathS();
  PlacePathS const begin = decision.begin ? pathOf(decision.begin) : PlacePathS();
  auto const find = [&](PlacePathS const& path) {
    return path.path.empty() ? PlaceS() : placeAt(view_.crefRoot(), path);
  };
  GroupC group(*this);
  if (groups_ == 1 && insert(decision)) view_.restartGroup();
  bool const placed = (!decision.target || placeCaret(find(target))) && selectOperand(find(begin)) &&
                      (!raisesBase(decision.text, view_.crefOperatorList()) || bracketPower());
  return group.end(placed && insert(decision));
}

bool FormulaFieldC::insert(InputDecisionS const& decision) {
  if (decision.kind != INPUT_TEXT) return runOperator(decision.text);
  return decision.text == u"/" ? insertFraction() : view_.insertText(decision.text);
}

/// A word between operands, just typed at the end of an exponent, a denominator or what is summed, leaves it
/// as a sign does. False when there is none.
bool FormulaFieldC::moveWordOut() {
  PlaceS begin;
  PlaceS target = leaveByWord(caret(), view_.crefOperatorList(), options_, begin);
  if (!begin) return false;
  wstring const word = caret().node->crefText().substr(begin.pos, caret().pos - begin.pos);
  std::size_t const blanks = word.find_first_not_of(u' ');
  PlaceS const further = leaveBoundsByWord(caret(), word.substr(blanks), bounds_, view_.crefOperatorList());
  if (options_.leaving && further) target = further;
  target = keepInBraces(target);
  if (!target) return false;
  PlacePathS const after = pathOf(target);
  GroupC group(*this);
  bool const done = deleteRange(begin, caret()) && placeCaret(placeAt(view_.crefRoot(), after));
  return group.end(done && view_.insertText(word));
}

/// Where the power begins that ends at the caret and needs brackets to be raised; null when there is none.
PlaceS FormulaFieldC::findPower() const {
  bool const possible = options_.exponents && !view_.isSelected();
  return possible ? startOfPower(caret(), view_.crefOperatorList()) : PlaceS();
}

/// Puts brackets around a power before the caret, which is to be raised, or "!" would apply to its exponent.
bool FormulaFieldC::bracketPower() {
  PlaceS const begin = findPower();
  return !begin || (selectOperand(begin) && bracketSelection());
}

/// Selects from `begin` to the caret, without the blanks before the caret, which go; nothing when `begin` is
/// null.
bool FormulaFieldC::selectOperand(PlaceS begin) {
  if (!begin) return true;
  PlacePathS const path = pathOf(begin);
  PlaceS end = caret();
  while (end.pos > 0 && end.node->crefText()[end.pos - 1] == u' ') --end.pos;
  return deleteRange(end, caret()) && select({placeAt(view_.crefRoot(), path), caret()});
}

/// Puts the caret after the selection, in brackets unless it is one operand.
bool FormulaFieldC::makeBase() {
  if (findBlock(view_.getSelection())) select(inOneRow(view_.getSelection()));
  SelectionS const stretch = inOneRow(view_.getSelection());
  bool const alone = options_.exponents && isBase(stretch, view_.crefOperatorList());
  return alone ? placeCaret(stretch.caret) : bracketSelection();
}

/// Lets a sign that comes after its operand, "!" or "°", apply to the selection.
bool FormulaFieldC::raiseSelection(InputDecisionS const& decision) {
  GroupC group(*this);
  return group.end(makeBase() && insert(decision));
}

bool FormulaFieldC::typeExponent(InputDecisionS const& decision) {
  GroupC group(*this);
  bool done = !view_.isSelected() || makeBase();
  if (Node4C const* const growing = findGrowingExponent(caret())) {
    done = done && placeCaret(rowEnd(*growing->child(0)));
  } else if (!isRaising(caret())) {
    done = done && bracketPower() && view_.insertText(u"^");
  }
  done = done && (decision.text.empty() || view_.insertText(decision.text));
  Node4C const* const item = done ? enclosingItem(*caret().node) : nullptr;
  if (item && decision.kind == INPUT_EXPONENT) placeCaret(placeAfter(*item));
  return group.end(done);
}

bool FormulaFieldC::bracketSelection() {
  if (findBlock(view_.getSelection())) select(inOneRow(view_.getSelection()));
  bytestring content;
  view_.copy(content);
  GroupC group(*this);
  return group.end(view_.insertText(u"(") && view_.paste(content) && view_.insertText(u")"));
}

bool FormulaFieldC::ungroup(PlaceS after) {
  SelectionS const row = wholeRow(*caret().node->getParent());
  PlacePathS const target = pathOf(after);
  bytestring content;
  view_.copy({placeAfter(*row.anchor.node->goRight()), placeBefore(*row.caret.node->goLeft())}, content);
  GroupC group(*this);
  return group.end(select(row) && view_.paste(content) && placeCaret(placeAt(view_.crefRoot(), target)));
}

/// Puts the brackets that vanished around the last row of the item before the caret again, and the caret
/// after them.
bool FormulaFieldC::regroup() {
  Node4C const* const item = caret().node->goLeft();
  if (!item || !isConstruct(item->getType())) return true;
  Node4C const* const row = item->child(item->numChildren() - 1);
  SelectionPathS const content = pathOf(wholeRow(*row));
  GroupC group(*this);
  restoreSelection(content);
  return group.end(bracketSelection());
}

void FormulaFieldC::replaceCompleted(InputDecisionS const& decision, char16_t c) {
  if (replaceCalculus(decision, c) || decision.kind == INPUT_MOVE) return;
  bool const typed = decision.kind == INPUT_TEXT;
  if (options_.letters && typed) {
    if (ReplacementS const found = findSignReplacement(view_); found.begin) {
      replaceText(found);
      return;
    }
  }
  if (ReplacementS const found =
          typed ? findDifferential(caret(), bounds_, view_.crefOperatorList()) : ReplacementS();
      found.begin) {
    GroupC group(*this);
    group.end(replaceText(found) && view_.insertText(found.text));
    return;
  }
  if (options_.grouping && typed && decision.text == u")") {
    if (PlaceS const after = afterGroup(caret())) last_.ungrouped = ungroup(after);
  }
  if (wordTyped_ && !(typed && isWord(decision.text))) replaceEndedName(decision.text);
  if (options_.impliedProducts && typed && decision.text == u"(") {
    if (ReplacementS const found = findFactorReplacement(view_); found.begin) replaceText(found);
  }
  if (options_.constructs && typed && (decision.text == u"(" || decision.text == u",")) {
    if (ConstructReplacementS const found = findConstructReplacement(view_, options_); found.op) {
      bool const hasBounds = replaceCall(found) && found.hasBounds;
      if (hasBounds) bounds_.push_back({enclosingItem(*caret().node), u')', false});
    }
  }
}

void FormulaFieldC::replaceEndedName(wstring const& by) {
  // What ended the name comes after it: in the same text or, as an item, before the caret's text.
  PlaceS const at = caret();
  Node4C const* const text = at.pos > 0 ? at.node : previousText(*at.node);
  if (!text) return;
  PlaceS const end = at.pos > 0 ? PlaceS{text, at.pos - 1} : endOf(text);
  ReplacementS found = options_.letters ? findFunctionReplacement(view_, end) : ReplacementS();
  if (!found.begin) {
    OperatorListC const& operators = view_.crefOperatorList();
    found = findNameReplacement(operators, end, nameOptions());
    auto const op = found.begin ? operators.lookup(found.text) : nullptr;
    bool const isBetween = op && op->getPlace() == OPERATOR_BETWEEN;
    // Before a bracket a name is a function's, but for a word between two operands.
    if (by == u"(" && !isBetween) found = findNameReplacement(operators, end, nameOptions(), NAME_IS_CALLED);
    if (by == u" " && isBetween && end.node == at.node) ++found.end.pos;
  }
  if (found.begin) replaceText(found);
}

/// The replacement that `completeName` would make; without a beginning there is none.
ReplacementS FormulaFieldC::findCompletion() const {
  bool const possible = wordTyped_ && isEditable() && !view_.isSelected();
  return possible ? findNameReplacement(view_.crefOperatorList(), caret(), nameOptions()) : ReplacementS();
}

void FormulaFieldC::completeName() {
  if (!wordTyped_ && !completion_.isOpen()) return;
  ActC const act(*this, makeStep(SCRIPT_COMPLETE));
  ReplacementS const found = findCompletion();
  wordTyped_ = false;
  if (found.begin) replaceText(found);
}

bool FormulaFieldC::replaceText(ReplacementS const& replacement) {
  SelectionPathS places = saveSelection();
  bool const caretMoves = caret() != replacement.end;
  bool const sameText = caret().node == replacement.end.node;
  unsigned long const behind = places.caret.pos - replacement.end.pos;
  GroupC group(*this);
  PlacePathS const target = pathOf(replacement.target ? replacement.target : replacement.begin);
  bool done = deleteRange(replacement.begin, replacement.end);
  if (replacement.target) return group.end(done && placeCaret(placeAt(view_.crefRoot(), target)));
  auto op = view_.crefOperatorList().lookup(replacement.text);
  // "log" is also the name of the construct with a base.
  auto const function =
      op && op->isConstruct() ? view_.crefOperatorList().lookupText(replacement.text) : nullptr;
  if (function && isCalled(*function)) op = function;
  if (PlaceS const after =
          op && !caretMoves ? keepInBraces(leaveByReplacement(caret(), *op, options_)) : PlaceS()) {
    done = done && placeCaret(after);
  }
  if (op && isCalled(*op)) {
    // Its brackets are typed.
    for (char16_t const c : replacement.text) done = done && view_.insertText(wstring(1, c));
  } else {
    done = done && view_.insertText(replacement.text);
  }
  for (std::size_t i = 0; done && i < replacement.exponent.size(); ++i) {
    done = view_.insertText(replacement.exponent.substr(i, 1));
  }
  if (done && caretMoves) {
    if (sameText) places.caret.pos = view_.getCaretPos() + behind;
    places.anchor = places.caret;
    restoreSelection(places);
  }
  return group.end(done);
}

}  // namespace zolt::field
