#include "zolt/common/signs.h"
#include "zolt/field/detail/act.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/construct_replacement.h"
#include "zolt/field/detail/input_places.h"
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

bool FormulaFieldC::insertEntry(PaletteEntryS const& entry, wstring const& name) {
  auto const op = view_.crefOperatorList().lookup(entry.insert);
  if (!op) {
    // "a" followed by "α" must not become one name.
    bool const joins = !view_.isSelected() && endsNameAt(caret());
    letterAccepted_ = (!joins || view_.insertText(u" ")) && view_.insertText(entry.insert);
    return letterAccepted_;
  }
  // Typed, a sign leaves exponents and fractions.
  if (char16_t const sign = typedSign(*op)) return typeCharacter(sign);
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
  braces_ = 0;
  letterAccepted_ = false;
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
  // Braces have a meaning of their own here.
  char16_t const c = typed == u'{' || typed == u'}' ? typed : foldTyped(typed, options_);
  bool const afterLetter = std::exchange(letterAccepted_, false);
  if (completion_.getKind() == COMPLETION_OF_COMMAND) {
    if (completion_.isContinuedBy(c)) {
      completion_.setQuery(completion_.crefQuery() + c);
      showComposed();
      return true;
    }
    // It must leave the command as it is.
    if (c != command_sign && findCause(typed) == math::common::READ_ERROR_BAD_CHARACTER)
      return refuse(wstring(1, typed), {math::common::READ_ERROR_BAD_CHARACTER, 0, 1, {}});
    std::size_t const meant = completion_.findMeant();
    if (meant == CompletionC::none)
      return refuse(pendingCommand(), {math::common::READ_ERROR_BAD_NAME, 0, 0, {}});
    auto const op = view_.crefOperatorList().lookup(completion_.crefEntries()[meant]->insert);
    // The name of a function whose base is typed next.
    if (c == u'_' && op && findMarkable(view_.crefOperatorList(), op->getText() + c)) {
      cancelCompletion();
      wstring const gap = endsNameAt(caret()) ? u" " : u"";
      return insertText(gap + op->getText() + c);
    }
    if (!accept(meant)) return false;
    if (c == u' ') return true;
    bool const isBracket = c == u'(' || c == u'[' || c == u'{';
    bool const construct = op && op->isConstruct();
    if (c == u'{' && construct) return ++braces_, true;
    if (isBracket && op && op->getArity() > 0 && isWrittenAsCall(*op)) return true;
  } else if (c == u'{' && bracesExpected_) {
    bracesExpected_ = false;
    return ++braces_, true;
  } else if (c == u'}' && braces_ > 0) {
    return closeBraces();
  } else if (afterLetter && math::common::isAsciiLetter(c)) {
    view_.insertText(u" ");
  }
  bracesExpected_ = false;
  if (c != command_sign || !options_.completion) return std::nullopt;
  completeName();
  wordTyped_ = false;
  // An upper bound of one word ends here.
  BoundsStepS step;
  decideInBounds(view_, c, options_, bounds_, step);
  if (step.target) placeCaret(step.target);
  completion_.open(COMPLETION_OF_COMMAND, view_);
  showComposed();
  return true;
}

/// To the next row of the construct whose row was written in braces, or out of it.
bool FormulaFieldC::closeBraces() {
  --braces_;
  completeName();
  Node4C const* const item = enclosingItem(*caret().node);
  if (!item) return false;
  Node4C const* const next = caret().node->getParent()->goRight();
  bracesExpected_ = next != nullptr;
  return placeCaret(next ? rowEnd(*next) : placeAfter(*item));
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
