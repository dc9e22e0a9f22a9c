#include "zolt/exchange/detail/latex_parser.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/latex_words.h"

namespace zolt::exchange::detail {

using namespace math::common;
using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::makeNumber;
using math::algexpr::makePower;

PointerTC<math::algexpr::NodeABC> LatexParserC::read() {
  NextE next = NEXT_OPERAND;
  if (token().type == LATEX_TOKEN_END) next = fail(READ_ERROR_EMPTY);
  while (next != NEXT_NOTHING && next != NEXT_FAILED) {
    expectsOperand_ = next != NEXT_SIGN;
    next = next == NEXT_SIGN ? readSign() : next == NEXT_HEAD ? continueHead() : readOperand();
  }
  return next == NEXT_FAILED ? nullptr : takeOperand();
}

// ---- Operands ---------------------------------------------------------------------------------------------

LatexParserC::NextE LatexParserC::readOperand() {
  LatexTokenE const type = token().type;
  bool const needsBraces = type == LATEX_TOKEN_FUNCTION || type == LATEX_TOKEN_BIG ||
                           type == LATEX_TOKEN_OPEN || type == LATEX_TOKEN_BAR || type == LATEX_TOKEN_INFIX ||
                           type == LATEX_TOKEN_PREFIX || type == LATEX_TOKEN_TABLE;
  if (needsBraces && isSingle()) return fail(READ_ERROR_MISSING_OPERAND);
  switch (type) {
    case LATEX_TOKEN_NUMBER:
      return advance(keep(makeNumber(token().text), OPERAND_LITERAL));
    case LATEX_TOKEN_NAME:
      return startsDifferential() ? closeIntegral() : readName();
    case LATEX_TOKEN_FUNCTION:
    case LATEX_TOKEN_BIG:
      return readHead();
    case LATEX_TOKEN_COMMAND:
      return readCommand();
    case LATEX_TOKEN_OPEN:
    case LATEX_TOKEN_CLOSE:
      return beginBrackets();
    case LATEX_TOKEN_TABLE:
      return beginTable();
    case LATEX_TOKEN_BAR:
      if (token().side == LATEX_SIDE_RIGHT) return fail(READ_ERROR_MISSING_OPERAND);
      return beginGroup(token().bracket, findLatexBrackets(token().bracket));
    case LATEX_TOKEN_BRACE_OPEN: {
      PendingE const kind = isSingle() ? frames_.back().kind : PENDING_GROUP;
      bool const isPart = kind == PENDING_OPERANDS && frames_.back().notation->name == u"/";
      bool const isBound = kind == PENDING_LOWER && frames_[frames_.size() - 2].notation->kind == LATEX_LIMIT;
      return beginGroup(isPart ? fraction_close : isBound ? limit_close : brace_close);
    }
    case LATEX_TOKEN_BRACE_CLOSE: {
      // "0+" as the bound of a limit.
      bool const follows = !frames_.empty() && frames_.back().kind == PENDING_INFIX;
      LatexNotationS const* const sign = follows ? frames_.back().notation : nullptr;
      if (!sign || sign->rule != RULE_SUM || !isInLimit()) return fail(READ_ERROR_MISSING_OPERAND);
      frames_.pop_back();
      return readSide(sign->name[0]);
    }
    case LATEX_TOKEN_PREFIX:
      return readPrefix(token().notation);
    case LATEX_TOKEN_INFIX:
      return readSignBeforeOperand();
    case LATEX_TOKEN_CELL:
      return skipsAlignment() ? advance(NEXT_OPERAND) : fail(READ_ERROR_MISSING_OPERAND);
    case LATEX_TOKEN_BAD:
      return fail(token().error);
    default:
      return fail(READ_ERROR_MISSING_OPERAND);
  }
}

LatexParserC::NextE LatexParserC::readName() {
  if (isPrefixName()) return readPrefix(token().notation);
  unsigned flags = OPERAND_NAME;
  if ((token().name & LATEX_NAME_CALLS) != 0) flags |= OPERAND_CALLS;
  if ((token().name & LATEX_NAME_D) != 0) flags |= OPERAND_D;
  return advance(keep(makeNamed(token().text), flags));
}

// Whether the letter is the sign before the operand that follows it. In a fraction, "∂" is a part of ∂f/∂x.
bool LatexParserC::isPrefixName() const {
  if (!token().notation || token().notation->kind != LATEX_PREFIX || isSingle()) return false;
  char16_t const close = closes_.empty() ? u'\0' : closes_.back();
  bool const isPart = (token().name & LATEX_NAME_D) != 0 && close == fraction_close;
  if (isPart && !token().inBraces) return false;
  LatexTokenS const next = lexer_.peekToken();
  if (next.type == LATEX_TOKEN_BAR) return next.side == LATEX_SIDE_LEFT;
  bool const isDifferential = close == integral_close && (next.name & LATEX_NAME_D) != 0 && !next.notation;
  return next.startsOperand() && (token().inBraces || !isDifferential);
}

LatexParserC::NextE LatexParserC::readPrefix(LatexNotationS const* notation) {
  // Signs take the product after them, letters one factor.
  bool const isSign = notation->rule == RULE_SIGN;
  RuleE const rule = !isSign ? notation->rule : token().type == LATEX_TOKEN_NAME ? RULE_POWER : RULE_PRODUCT;
  FrameS frame{PENDING_PREFIX, std::max(currentRule(), rule)};
  frame.notation = notation;
  frame.asWritten = true;
  frames_.push_back(std::move(frame));
  return advance(NEXT_OPERAND);
}

// Two minus signs without an operand between them cancel each other out, a plus says nothing.
LatexParserC::NextE LatexParserC::readSignBeforeOperand() {
  static LatexNotationS const* const plus = findLatex(u"+", 2);
  static LatexNotationS const* const positive = findLatex(u"_pos", 1);
  static LatexNotationS const* const negative = findLatex(u"_neg", 1);
  std::u16string_view const sign = token().notation->name;
  if (sign != u"+" && sign != u"-") {
    LatexNotationS const* const prefix = findLatexReading(token().word, LATEX_PREFIX);
    return prefix ? readPrefix(prefix) : fail(READ_ERROR_MISSING_OPERAND);
  }
  bool const isPlus = sign == u"+";
  if (isPlus && !token().inBraces) return advance(NEXT_OPERAND);
  bool const follows = !frames_.empty() && frames_.back().kind == PENDING_INFIX;
  if (follows && !token().inBraces && frames_.back().notation->name == u"-") {
    frames_.back().notation = plus;
    return advance(NEXT_OPERAND);
  }
  FrameS frame{PENDING_PREFIX, std::max(currentRule(), RULE_PRODUCT)};
  frame.notation = isPlus ? positive : negative;
  frame.asWritten = token().inBraces;
  frames_.push_back(std::move(frame));
  return advance(NEXT_OPERAND);
}

LatexParserC::NextE LatexParserC::readCommand() {
  FrameS frame{PENDING_OPERANDS};
  frame.notation = token().notation;
  frame.firstOperand = operands_.size();
  std::u16string_view const command = token().word;
  lexer_.readNextToken(LATEX_TOKEN_SINGLE);
  LatexNotationS const* const withOption =
      token().type == LATEX_TOKEN_OPEN && token().bracket == u'[' ? findLatexWithOption(command) : nullptr;
  if (withOption) frame.notation = withOption;
  frames_.push_back(std::move(frame));
  return withOption ? beginGroup(u']') : NEXT_SINGLE;
}

LatexParserC::NextE LatexParserC::beginGroup(char16_t close, LatexNotationS const* notation) {
  FrameS frame{PENDING_GROUP};
  frame.close = close;
  frame.notation = notation;
  frame.firstOperand = operands_.size();
  frame.begin = token().begin;
  frame.end = token().end;
  frames_.push_back(std::move(frame));
  closes_.push_back(close);
  return advance(NEXT_OPERAND);
}

LatexParserC::NextE LatexParserC::beginScript(PendingE kind) {
  frames_.push_back({kind});
  return advance(NEXT_SINGLE);
}

// ---- Functions, sums and integrals ------------------------------------------------------------------------

LatexParserC::NextE LatexParserC::readHead() {
  FrameS frame{PENDING_HEAD};
  frame.notation = token().notation;
  frame.word = token().word;
  frame.begin = token().begin;
  frame.end = token().end;
  frames_.push_back(std::move(frame));
  return advance(NEXT_HEAD);
}

LatexParserC::NextE LatexParserC::continueHead() {
  FrameS& head = frames_.back();
  if (token().type == LATEX_TOKEN_LOWER) {
    return head.lower ? fail(READ_ERROR_SECOND_SCRIPT) : beginScript(PENDING_LOWER);
  }
  if (token().type == LATEX_TOKEN_UPPER) {
    return head.upper ? fail(READ_ERROR_SECOND_SCRIPT) : beginScript(PENDING_UPPER);
  }
  if (token().type == LATEX_TOKEN_APPLY) return advance(NEXT_HEAD);
  if (token().type == LATEX_TOKEN_RAISED && !head.upper) {
    head.upper = isDigit(token().text[0]) ? makeNumber(token().text) : makeNamed(token().text);
    return advance(NEXT_HEAD);
  }
  bool const isFunction = head.notation->kind == LATEX_FUNCTION || head.notation->kind == LATEX_INDEXED;
  return isFunction ? readArgument() : readBig();
}

LatexParserC::NextE LatexParserC::readArgument() {
  FrameS& head = frames_.back();
  if (head.upper && isMinusOne(*head.upper)) {
    if (head.notation->inverse.empty()) return failAt(head.begin, head.end, READ_ERROR_MISPLACED);
    head.word = head.notation->inverse;
    head.upper = nullptr;
  }
  if (head.lower && !findLatexReading(head.word, LATEX_INDEXED)) {
    return failAt(head.begin, head.end, READ_ERROR_MISPLACED);
  }
  bool const groups = token().type == LATEX_TOKEN_OPEN && !findLatexBrackets(token().bracket);
  if (groups || token().type == LATEX_TOKEN_BRACE_OPEN) {
    head.kind = PENDING_CALL;
    head.close = groups ? findClosing(token().bracket) : brace_close;
    head.firstOperand = operands_.size();
    closes_.push_back(head.close);
    return advance(NEXT_OPERAND);
  }
  bool const isSign = token().type == LATEX_TOKEN_INFIX && token().notation->rule == RULE_SUM;
  if (!token().startsOperand() && !isSign) {
    return token().type == LATEX_TOKEN_BAD ? fail(token().error)
                                           : failAt(head.begin, head.end, READ_ERROR_MISSING_ARGUMENTS);
  }
  head.kind = PENDING_APPLICATION;
  head.operandRule = RULE_ARGUMENT;
  return NEXT_OPERAND;
}

LatexParserC::NextE LatexParserC::readBig() {
  FrameS& head = frames_.back();
  LatexKindE const kind = head.notation->kind;
  if (kind == LATEX_INTEGRAL || kind == LATEX_PRIMITIVE) {
    if (static_cast<bool>(head.lower) != static_cast<bool>(head.upper))
      return failAt(head.begin, head.end, READ_ERROR_BAD_BOUNDS);
    return beginIntegral();
  }
  NodeT const bound = std::move(head.lower);
  bool const isComplete = static_cast<bool>(head.upper) == (kind == LATEX_RANGE);
  bool const isRange = kind == LATEX_LIMIT ? takeRange(bound, u":>", head.head, head.lower) ||
                                                 takeRange(bound, u"to", head.head, head.lower)
                                           : takeRange(bound, u"=", head.head, head.lower);
  if (!isComplete || !isRange) return failAt(head.begin, head.end, READ_ERROR_BAD_BOUNDS);
  if (kind == LATEX_WHERE) {
    NodeT node = makeFunction(wstring(head.notation->name), {takeOperand(), head.head, head.lower});
    frames_.pop_back();
    return keep(std::move(node));
  }
  head.kind = PENDING_BIG;
  head.operandRule = RULE_PRODUCT;
  return NEXT_OPERAND;
}

LatexParserC::NextE LatexParserC::beginIntegral() {
  FrameS& head = frames_.back();
  head.notation = findLatex(head.lower ? LATEX_INTEGRAL : LATEX_PRIMITIVE);
  head.kind = PENDING_INTEGRAL;
  head.close = integral_close;
  head.firstOperand = operands_.size();
  // "\iint" is two of them, without bounds.
  bool const isCommand = head.word[0] == u'\\';
  std::size_t count = isCommand
                          ? static_cast<std::size_t>(std::count(head.word.begin(), head.word.end(), u'i'))
                          : static_cast<std::size_t>(head.word[0] - u'∫') + 1;
  if (count > 1 && head.lower) return failAt(head.begin, head.end, READ_ERROR_BAD_BOUNDS);
  frames_.insert(frames_.end(), count - 1, FrameS(frames_.back()));
  closes_.insert(closes_.end(), count, integral_close);
  for (; count > 0; --count) integrals_.push_back(frames_.size() - count);
  return NEXT_OPERAND;
}

// The name of a function, or a power of it, is the last operand.
LatexParserC::NextE LatexParserC::readNameCall() {
  FrameS frame{PENDING_CALL};
  frame.begin = token().begin;
  frame.end = token().end;
  frame.head = takeOperand();
  if (auto const* const power = frame.head->asParent()) {
    frame.upper = power->childPointer(1);
    frame.head = power->childPointer(0);
    if (isMinusOne(*frame.upper)) return fail(READ_ERROR_MISPLACED);
  }
  if (!opensCall()) {
    frame.kind = PENDING_APPLICATION;
    frame.operandRule = RULE_ARGUMENT;
    frames_.push_back(std::move(frame));
    return NEXT_OPERAND;
  }
  frame.close = u')';
  frame.firstOperand = operands_.size();
  frames_.push_back(std::move(frame));
  closes_.push_back(u')');
  return advance(NEXT_OPERAND);
}

// The sign makes any name before it a function.
LatexParserC::NextE LatexParserC::readApply() {
  if ((operands_.back().flags & (OPERAND_NAME | OPERAND_NAME_POWER)) == 0) return fail(READ_ERROR_MISPLACED);
  lexer_.readNextToken();
  return token().startsOperand() ? readNameCall() : fail(READ_ERROR_MISSING_ARGUMENTS);
}

// ---- After an operand -------------------------------------------------------------------------------------

LatexParserC::NextE LatexParserC::readSign() {
  if ((operands_.back().flags & OPERAND_CALLS) != 0 && opensCall()) {
    // Which function an index that is a formula means is not known.
    return (operands_.back().flags & OPERAND_INDEXED) != 0 ? fail(READ_ERROR_MISPLACED) : readNameCall();
  }
  switch (token().type) {
    case LATEX_TOKEN_INFIX:
      return readInfix(*token().notation);
    case LATEX_TOKEN_POSTFIX:
      return readPostfix(token().notation);
    case LATEX_TOKEN_RAISED:
      return readRaised();
    case LATEX_TOKEN_UPPER:
      return readUpper();
    case LATEX_TOKEN_LOWER:
      return readLower();
    case LATEX_TOKEN_APPLY:
      return readApply();
    case LATEX_TOKEN_TIMES:
      return readTimes();
    case LATEX_TOKEN_BAR:
      return readBar();
    case LATEX_TOKEN_END:
    case LATEX_TOKEN_CLOSE:
    case LATEX_TOKEN_BRACE_CLOSE:
      return readBracketEnd();
    case LATEX_TOKEN_COMMA:
      return readComma();
    case LATEX_TOKEN_CELL:
    case LATEX_TOKEN_ROW:
    case LATEX_TOKEN_TABLE_END:
      return readCell();
    case LATEX_TOKEN_OPEN:
      // The end of "]a, b[".
      if (token().bracket != u'[' || closes_.empty()) return readProduct();
      return closes_.back() == list_close || closes_.back() == u'[' ? readBracketEnd() : readProduct();
    case LATEX_TOKEN_BAD:
      return fail(token().error);
    case LATEX_TOKEN_NAME:
      return startsDifferential() ? closeIntegral() : readProduct();
    case LATEX_TOKEN_BRACE_OPEN:
      if (lexer_.peekToken().type != LATEX_TOKEN_BRACE_CLOSE) return readProduct();
      lexer_.readNextToken();
      return advance(NEXT_SIGN);
    default:
      return token().startsOperand() ? readProduct() : fail(READ_ERROR_MISSING_OPERATOR);
  }
}

LatexParserC::NextE LatexParserC::readInfix(LatexNotationS const& notation) {
  FrameS frame{PENDING_INFIX, notation.rightRule};
  frame.notation = &notation;
  foldMinus();
  finishTighterThan(frame.notation->rule);
  if (frame.notation->rule == RULE_ASSIGNMENT && (operands_.back().flags & OPERAND_ASSIGNMENT) != 0) {
    return fail(READ_ERROR_SECOND_ASSIGNMENT);
  }
  frames_.push_back(std::move(frame));
  return advance(NEXT_OPERAND);
}

LatexParserC::NextE LatexParserC::readPostfix(LatexNotationS const* notation) {
  finishTighterThan(RULE_POSTFIX);
  return advance(keep(math::algexpr::makeOperation(wstring(notation->name), {takeOperand()})));
}

LatexParserC::NextE LatexParserC::readRaised() {
  if ((operands_.back().flags & OPERAND_POWER) != 0) return fail(READ_ERROR_SECOND_SCRIPT);
  frames_.push_back({PENDING_POWER});
  wstring const& raised = token().text;
  return advance(keep(isDigit(raised[0]) ? makeNumber(raised) : makeNamed(raised)));
}

LatexParserC::NextE LatexParserC::readUpper() {
  if (LatexNotationS const* const sign = lexer_.readRaisedSign()) return readPostfix(sign);
  if (isInLimit()) {
    if (char16_t const side = lexer_.readSide(); side != u'\0') {
      lexer_.readNextToken();
      return readSide(side);
    }
  }
  if ((operands_.back().flags & OPERAND_POWER) != 0) return fail(READ_ERROR_SECOND_SCRIPT);
  return beginScript(PENDING_POWER);
}

// The index of a name that was in braces or has got an exponent before.
LatexParserC::NextE LatexParserC::readLower() {
  OperandS& operand = operands_.back();
  if ((operand.flags & OPERAND_INDEXED) != 0) return fail(READ_ERROR_SECOND_SCRIPT);
  auto const* const power = (operand.flags & OPERAND_NAME_POWER) != 0 ? operand.node->asParent() : nullptr;
  if (!power && (operand.flags & OPERAND_NAME) == 0) return beginIndex();
  wstring name = power ? power->child(0).crefName() : operand.node->crefName();
  if (name == pi_name) name = greek_pi;
  bool const hasIndex = name.find(u'_') != wstring::npos;
  if (hasIndex && (operand.flags & OPERAND_BRACED) == 0) return fail(READ_ERROR_SECOND_SCRIPT);
  wstring index;
  if (hasIndex || !lexer_.readIndex(index)) return beginIndex();
  NodeT named = makeNamed(name + u'_' + index);
  operand.node = power ? makeFunction(u"^", {std::move(named), power->childPointer(1)}) : std::move(named);
  operand.flags &= OPERAND_NAME | OPERAND_NAME_POWER | OPERAND_CALLS | OPERAND_POWER;
  return advance(NEXT_SIGN);
}

LatexParserC::NextE LatexParserC::readProduct() {
  static LatexNotationS const* const times = findLatex(u"*", 2);
  // After a function without brackets, factors belong to its argument, up to the next function.
  finishTighterThan(RULE_ARGUMENT);
  bool const isNext = token().type == LATEX_TOKEN_FUNCTION || token().type == LATEX_TOKEN_BIG;
  bool const inArgument = !isNext && !frames_.empty() && frames_.back().kind == PENDING_APPLICATION;
  if (!inArgument) finishTighterThan(times->rule);
  FrameS frame{PENDING_INFIX, RULE_POWER};
  frame.notation = times;
  frame.asWritten = true;
  frames_.push_back(std::move(frame));
  return NEXT_OPERAND;
}

// The sign only says that brackets after a name are no call.
LatexParserC::NextE LatexParserC::readTimes() {
  operands_.back().flags &= ~unsigned{OPERAND_CALLS};
  lexer_.readNextToken();
  return token().startsOperand() ? NEXT_SIGN : fail(READ_ERROR_MISSING_OPERAND);
}

LatexParserC::NextE LatexParserC::readBar() {
  bool const closes = !closes_.empty() && closes_.back() == token().bracket;
  if (token().side == LATEX_SIDE_LEFT) return readProduct();
  if (token().side == LATEX_SIDE_RIGHT || closes) {
    return !closes_.empty() && closes_.back() == no_bracket ? readWhere() : readBracketEnd();
  }
  if (lexer_.peekToken().type == LATEX_TOKEN_LOWER) return readWhere();
  LatexNotationS const* const condition = findLatex(condition_name, 2);
  return condition && separates() ? readInfix(*condition) : readProduct();
}

LatexParserC::NextE LatexParserC::readWhere() {
  bool const isClosing = !closes_.empty() && closes_.back() == no_bracket && token().side == LATEX_SIDE_RIGHT;
  foldMinus();
  finishTighterThan(isClosing ? no_rule : tighterThan(RULE_RELATION));
  if (isClosing) {
    frames_.pop_back();
    closes_.pop_back();
  }
  FrameS frame{PENDING_HEAD};
  frame.notation = findLatex(LATEX_WHERE);
  frame.begin = token().begin;
  frame.end = token().end;
  frames_.push_back(std::move(frame));
  return advance(NEXT_HEAD);
}

LatexParserC::NextE LatexParserC::readBracketEnd() {
  foldMinus();
  finishTighterThan(no_rule);
  LatexTokenE const type = token().type;
  if (frames_.empty()) {
    if (type == LATEX_TOKEN_END) return NEXT_NOTHING;
    return fail(READ_ERROR_UNEXPECTED_CLOSE);
  }
  FrameS const& frame = frames_.back();
  if (frame.kind == PENDING_INTEGRAL) return failAt(frame.begin, frame.end, READ_ERROR_NO_DIFFERENTIAL);
  if (type == LATEX_TOKEN_BRACE_CLOSE) {
    return isBraceClose(frame.close) ? closeBracket() : fail(READ_ERROR_MISSING_CLOSE);
  }
  bool const isDelimiter = type != LATEX_TOKEN_END;
  // "\right." and "\left." go with any delimiter, and the brackets of an interval may differ.
  bool const isFree = token().bracket == no_bracket || frame.close == no_bracket;
  bool const isInterval = frame.comma > 0 && closes_.back() == list_close && isIntervalEnd(token().bracket);
  bool const isSign = frame.close != table_close && !isBraceClose(frame.close);
  bool const fits = isDelimiter && (token().bracket == frame.close || (isFree && isSign) || isInterval);
  return fits ? closeBracket() : fail(READ_ERROR_MISSING_CLOSE);
}

// ---- Reading on -------------------------------------------------------------------------------------------

LatexParserC::NextE LatexParserC::advance(NextE next) {
  if (next != NEXT_FAILED) lexer_.readNextToken(next == NEXT_SINGLE ? LATEX_TOKEN_SINGLE : LATEX_TOKEN_WHOLE);
  return next;
}

bool LatexParserC::opensCall() const { return token().type == LATEX_TOKEN_OPEN && token().bracket == u'('; }

LatexParserC::NextE LatexParserC::fail(ReadErrorE cause) { return failAt(token().begin, token().end, cause); }

LatexParserC::NextE LatexParserC::failAt(std::size_t begin, std::size_t end, ReadErrorE cause) {
  error_ = {cause, static_cast<unsigned long>(begin), static_cast<unsigned long>(end), describe(cause)};
  if (cause != READ_ERROR_UNKNOWN_COMMAND) return NEXT_FAILED;
  std::u16string const nearest = findNearestCommand(text_.substr(begin, end - begin));
  if (!nearest.empty()) error_.message += u", but " + nearest + u" is";
  return NEXT_FAILED;
}

}  // namespace zolt::exchange::detail
