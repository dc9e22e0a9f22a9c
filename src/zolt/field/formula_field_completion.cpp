#include "zolt/common/signs.h"
#include "zolt/exchange/latex.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/operand_ends.h"
#include "zolt/field/detail/typed_bounds.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

constexpr char16_t command_sign = u'\\';
constexpr std::size_t least_name = 2;  // letters before a name is completed

/// Where the name begins that ends at the place, if it has only letters and enough of them; else null.
PlaceS findNameBegin(PlaceS end) {
  wstring const& text = end.node->crefText();
  if (end.pos < text.size() && isWordCharacter(text[end.pos])) return {};
  unsigned int begin = end.pos;
  while (begin > 0 && math::common::isAsciiLetter(text[begin - 1])) --begin;
  // What else belongs to the name: "x_ma", "a2b".
  bool const whole = begin == wordStart(text, end.pos) || !endsNameAt({end.node, begin});
  return whole && end.pos - begin >= least_name ? PlaceS{end.node, begin} : PlaceS();
}

/// The sign that an operator is typed by, when it is one character between or beside its operands.
char16_t typedSign(OperatorBC const& op) {
  wstring const text = op.getText();
  return op.isLinear() && op.getArity() > 0 && text.size() == 1 ? text[0] : u'\0';
}

}  // namespace

// ---- Composition -----------------------------------------------------------------------------------------

bool FormulaFieldC::compose(wstring const& text, unsigned long caret) {
  if (!isEditable()) return false;
  composed_ = text;
  composedCaret_ = caret;
  reveal_ = true;
  return showComposed();
}

void FormulaFieldC::endComposition() {
  if (composed_.empty()) return;
  composed_.clear();
  showComposed();
}

wstring FormulaFieldC::pendingCommand() const {
  return completion_.getKind() == COMPLETION_OF_COMMAND ? command_sign + completion_.crefQuery() : wstring();
}

bool FormulaFieldC::showComposed() {
  wstring const pending = pendingCommand();
  return view_.compose(pending + composed_, static_cast<unsigned long>(pending.size()) + composedCaret_);
}

// ---- Completion ------------------------------------------------------------------------------------------

RectangleS FormulaFieldC::getCompletionRectangle() const {
  if (completion_.getKind() == COMPLETION_OF_COMMAND)
    return view_.getComposedRectangle(0, static_cast<unsigned long>(pendingCommand().size()));
  PlaceS const begin = findNameBegin(caret());
  return view_.getRectangle({begin ? begin : caret(), caret()});
}

bool FormulaFieldC::suggestNames() {
  if (!options_.suggestions || !isEditable() || view_.isSelected() || completion_.isOpen()) return false;
  PlaceS const begin = findNameBegin(caret());
  if (!begin) return false;
  ActC const act(*this, makeStep(SCRIPT_SUGGEST), ActC::KEEP_COMPLETION);
  completion_.open(COMPLETION_OF_NAME, view_);
  refreshNames();
  return completion_.isOpen();
}

/// Finds the names anew after a character was typed; closes the list when none is left.
void FormulaFieldC::refreshNames() {
  if (completion_.getKind() != COMPLETION_OF_NAME) return;
  PlaceS const end = caret();
  PlaceS const begin = view_.isSelected() ? PlaceS() : findNameBegin(end);
  if (begin) completion_.setQuery(begin.node->crefText().substr(begin.pos, end.pos - begin.pos));
  // A list that only repeats what has been typed helps nobody.
  bool const repeats = completion_.crefEntries().size() == 1 && completion_.findExact() == 0;
  if (!begin || completion_.crefEntries().empty() || repeats) completion_.close();
}

bool FormulaFieldC::acceptCompletion(std::size_t number) {
  if (!completion_.isOpen() || number >= completion_.crefEntries().size()) return false;
  ScriptStepS step = makeStep(SCRIPT_ACCEPT);
  step.code = static_cast<unsigned long>(number);
  ActC const act(*this, std::move(step), ActC::KEEP_COMPLETION);
  return accept(number);
}

bool FormulaFieldC::accept(std::size_t number) {
  if (!isEditable()) return false;
  PaletteEntryS const& entry = *completion_.crefEntries()[number];
  CompletionE const kind = completion_.getKind();
  completion_.close();
  showComposed();
  view_.getExpressionSize();
  PlaceS const begin = kind == COMPLETION_OF_NAME ? findNameBegin(caret()) : PlaceS();
  GroupC group(*this);
  wordTyped_ = false;
  bool const done = (!begin || deleteRange(begin, caret())) && insertEntry(entry, completion_.crefQuery());
  if (!group.end(done)) {
    completion_.reopen(kind);
    showComposed();
    return false;
  }
  completion_.noteUse(number);
  return true;
}

/// A blank where a name would become one with what is before it: "a" and "α". An index is one with its name.
wstring FormulaFieldC::gapBeforeName() const {
  PlaceS const at = caret();
  bool const joins = !view_.isSelected() && endsNameAt(at) && !endsWithIndexSign(at);
  return joins ? u" " : u"";
}

bool FormulaFieldC::insertEntry(PaletteEntryS const& entry, wstring const& name) {
  if (char16_t const bracket = exchange::findLatexBracket(command_sign + name)) return typeCharacter(bracket);
  auto const op = view_.crefOperatorList().lookup(entry.insert);
  if (!op) {
    // "a" followed by "α" must not become one name.
    bool const done = view_.insertText(gapBeforeName() + entry.insert);
    completed_ = done ? COMPLETED_LETTER : COMPLETED_NOTHING;
    return done;
  }
  // Typed, a sign or word between operands leaves exponents, fractions and sums.
  if (char16_t const sign = typedSign(*op)) return typeCharacter(sign);
  bool const isWordBetween = op->getPlace() == OPERATOR_BETWEEN && isWordCharacter(op->getText()[0]);
  if (isWordBetween && op->isLinear() && !view_.isSelected()) return insertText(u' ' + op->getText() + u' ');
  ConstructNameS const named = findConstruct(view_.crefOperatorList(), name);
  if (!op->isConstruct() || view_.isSelected()) return runOperator(entry.insert);
  if (named.op.get() != op.get() || named.mark.empty()) return insertEmpty(entry, *op);
  ConstructReplacementS call;
  call.op = op;
  call.begin = call.end = caret();
  auto const rows = argumentRows(*op, op->getInsertedRows());
  call.caretRow = rows.front();
  call.marks = {{named.mark, rows[1]}};
  return replaceCall(call);
}

/// Inserts a construct that takes nothing from around the caret, which "/" does when it is typed.
bool FormulaFieldC::insertEmpty(PaletteEntryS const& entry, OperatorBC const& op) {
  TreeNotationS tree;
  unsigned long position = 0;
  if (!readTreeNotation(entry.picture, view_.crefOperatorList(), tree, position)) return false;
  if (!view_.paste(writeBytes(*tree.root->child(0)))) return false;
  Node4C const* const item = caret().node->goLeft();
  if (!item || item->crefOperator() != &op) return false;
  return placeCaret(
      rowStart(*item->child(isWrittenAsCall(op) ? argumentRows(op, item->numChildren()).front() : 0)));
}

/// Ends the completion before the field does something else: the command whose whole name is there counts,
/// and the beginning of one is dropped.
void FormulaFieldC::leaveCompletion() {
  braces_.clear();
  completed_ = COMPLETED_NOTHING;
  if (!completion_.isOpen()) return;
  bool const command = completion_.getKind() == COMPLETION_OF_COMMAND;
  std::size_t const exact = command ? completion_.findExact() : CompletionC::none;
  if (exact == CompletionC::none || !accept(exact)) cancelCompletion();
}

void FormulaFieldC::cancelCompletion() {
  completion_.close();
  showComposed();
}

std::optional<bool> FormulaFieldC::typeInCompletion(char16_t typed) {
  bool const isBrace = typed == u'{' || typed == u'}';
  bool const isExpected = std::exchange(bracesExpected_, false);
  if (!braces_.empty() && braces_.back().kind == TypedGroupS::SHORT_ROW) {
    if (math::common::isAsciiLetter(typed) || math::common::isDigit(typed)) return typeShortRow(typed);
    braces_.pop_back();
  }
  if (completion_.getKind() == COMPLETION_OF_COMMAND) {
    if (isBrace && completion_.crefQuery().empty()) {
      // Of a set, "\{1, 2\}".
      cancelCompletion();
      return std::nullopt;
    }
    if (auto const taken = typeInCommand(typed)) return taken;
  } else if (typed == u'{' && isExpected) {
    return openBraces({TypedGroupS::ROW, u'}', enclosingItem(*caret().node)});
  }
  CompletedE const completed = std::exchange(completed_, COMPLETED_NOTHING);
  if (completed == COMPLETED_FUNCTION && typed == u'{')
    return typeCharacter(u'(') && openBraces({TypedGroupS::ARGUMENT});
  bool const isName = math::common::isAsciiLetter(typed) || math::common::isDigit(typed);
  bool const isRaised = math::common::loweredSign(typed) != u'\0' || math::common::countPrimes(typed) > 0;
  bool const isOperand =
      isName || typed == u'.' || typed == u'|' || typed == command_sign || (typed >= 0x80 && !isRaised);
  if (completed == COMPLETED_FUNCTION ? isOperand : completed == COMPLETED_LETTER && isName)
    typeCharacter(u' ');
  if (typed == u'{' && endsWithIndexSign(caret())) openBraces({TypedGroupS::INDEX});
  if ((typed == u'}' || typed == u']') && closeBraces(typed)) return true;
  if (typed != command_sign || !options_.completion) return std::nullopt;
  completeName();
  wordTyped_ = false;
  // An upper bound of one word ends here.
  BoundsStepS step;
  decide(typed, step);
  if (step.target) placeCaret(step.target);
  completion_.open(COMPLETION_OF_COMMAND, view_);
  showComposed();
  return true;
}

/// What a character does to an open command; nothing: it ended it and does what it does elsewhere.
std::optional<bool> FormulaFieldC::typeInCommand(char16_t typed) {
  char16_t const c = typed == u'{' ? typed : foldTyped(typed, options_);
  if (completion_.isContinuedBy(c)) {
    completion_.setQuery(completion_.crefQuery() + c);
    showComposed();
    return true;
  }
  wstring const& query = completion_.crefQuery();
  wstring const command = command_sign + (query.empty() ? wstring(1, c) : query);
  char16_t const bracket = exchange::findLatexBracket(command);
  if (bracket != u'\0' || exchange::isLatexStyle(command)) {
    bool const isSign = query.empty();
    cancelCompletion();
    if (bracket != u'\0' && !typeCharacter(bracket)) return false;
    if (bracket == u'\0' && c == u'{') return openBraces({TypedGroupS::LETTERS});
    // A space, which keeps apart what is around it.
    if (isSign && bracket == u'\0') completed_ = COMPLETED_LETTER;
    bool const isNone = c == u'.' && (command == u"\\left" || command == u"\\right");
    return isSign || isNone || c == u' ' ? std::optional(true) : std::nullopt;
  }
  if (query.empty() && (c == u'%' || c == u'_')) {
    cancelCompletion();
    return std::nullopt;
  }
  if (query == u"mathbb" && c == u'{') {
    cancelCompletion();
    return openBraces({TypedGroupS::STRUCK});
  }
  // It must leave the command as it is.
  if (c != command_sign && findCause(typed) == math::common::READ_ERROR_BAD_CHARACTER)
    return refuse(wstring(1, typed), {math::common::READ_ERROR_BAD_CHARACTER, 0, 1, {}});
  wstring const sign =
      completion_.findExact() == CompletionC::none ? exchange::findLatexSign(command) : wstring();
  if (!sign.empty()) {
    bool const isName = isWordCharacter(sign[0]);
    cancelCompletion();
    bool const done = view_.crefOperatorList().lookup(sign) ? runOperator(sign)
                      : isName && sign.size() > 1           ? completeFunction(sign)
                                                  : insertText((isName ? gapBeforeName() : wstring()) + sign);
    if (!done) return false;
    return c == u' ' ? std::optional(true) : std::nullopt;
  }
  std::size_t const meant = completion_.findMeant();
  if (meant == CompletionC::none)
    return refuse(pendingCommand(), {math::common::READ_ERROR_BAD_NAME, 0, 0, {}});
  auto const op = view_.crefOperatorList().lookup(completion_.crefEntries()[meant]->insert);
  bool const isConstruct = op && op->isConstruct();
  bool const isFunction =
      op && isCalled(*op) && math::common::isAsciiLetter(op->getText()[0]) && !view_.isSelected();
  // The name of a function whose base is typed next.
  bool const hasBase = c == u'_' && op && findMarkable(view_.crefOperatorList(), op->getText() + c);
  if (hasBase || (isFunction && c != u'(')) {
    completion_.noteUse(meant);
    cancelCompletion();
    if (!completeFunction(op->getText())) return false;
    return c == u' ' ? std::optional(true) : std::nullopt;
  }
  if (!accept(meant)) return false;
  if (c == u' ') return true;
  completed_ = COMPLETED_NOTHING;
  if (c == u'{' && isConstruct) return openBraces({TypedGroupS::ROW, u'}', enclosingItem(*caret().node)});
  if (typed == u'[' && isConstruct && insertIndexed(*op))
    return openBraces({TypedGroupS::ROW, u']', enclosingItem(*caret().node)});
  bool const hasShortRows = op && op->getInsertedRows() == 2 && op->crefWords().lowerRows == 0;
  if (math::common::isDigit(c) && isConstruct && hasShortRows &&
      openBraces({TypedGroupS::SHORT_ROW, u'\0', enclosingItem(*caret().node)}))
    return typeShortRow(c);
  bool const isBracket = c == u'(' || c == u'[' || c == u'{';
  if (isBracket && op && op->getArity() > 0 && isWrittenAsCall(*op)) return true;
  return std::nullopt;
}

/// Types the name of a function after a command; its argument or exponent follows.
bool FormulaFieldC::completeFunction(wstring const& name) {
  if (!insertText(gapBeforeName() + name)) return false;
  completed_ = COMPLETED_FUNCTION;
  return true;
}

std::optional<bool> FormulaFieldC::runInCompletion(CommandE command, ScriptStepS step) {
  if (!isForCompletion(command)) return std::nullopt;
  ActC const act(*this, std::move(step), ActC::KEEP_COMPLETION);
  switch (command) {
    case COMMAND_UP:
    case COMMAND_DOWN:
      completion_.moveCurrent(command == COMMAND_DOWN);
      return !completion_.crefEntries().empty();
    case COMMAND_NEXT_SLOT:
      return completion_.getCurrent() != CompletionC::none && accept(completion_.getCurrent());
    case COMMAND_DELETE_LEFT:
      if (wstring query = completion_.crefQuery(); !query.empty()) {
        query.pop_back();
        completion_.setQuery(std::move(query));
        return showComposed();
      }
      [[fallthrough]];
    default:
      cancelCompletion();
      return true;
  }
}

/// Whether an open list takes the command.
bool FormulaFieldC::isForCompletion(CommandE command) const {
  bool const ofCommand = completion_.getKind() == COMPLETION_OF_COMMAND;
  bool const chosen = completion_.getCurrent() != CompletionC::none;
  switch (command) {
    case COMMAND_DOWN:
    case COMMAND_DROP_SELECTION:
      return completion_.isOpen();
    case COMMAND_UP:
    case COMMAND_NEXT_SLOT:
      return ofCommand || (completion_.isOpen() && chosen);
    case COMMAND_DELETE_LEFT:
    case COMMAND_DELETE_WORD_LEFT:
    case COMMAND_UNDO:
      return ofCommand;
    default:
      return false;
  }
}

}  // namespace zolt::field
